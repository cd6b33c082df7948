#pragma once

#include <QImage>
#include <QSize>

#include <array>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

struct mpv_handle;
struct mpv_render_context;

namespace tollivar::player {

/// Draws the core's pictures, scaled and with their bars, into images of the size that is wanted.
///
/// Threads: made, asked and destroyed on the main thread; draws on a thread of its own, so that a
///          large picture never holds up the window. `onPicture` runs on that thread.
/// Owns:    its thread and three images, which it reuses; borrows the core, which must live longer.
/// Units:   sizes in device pixels.
class PictureSource {
public:
    PictureSource(mpv_handle &core, std::function<void()> onPicture);
    ~PictureSource();
    PictureSource(const PictureSource &) = delete;
    PictureSource &operator=(const PictureSource &) = delete;

    /// The last picture is drawn anew in that size; never blocks.
    void setSize(QSize size);

    /// The newest picture, valid until the next call; null before there is one. Never blocks.
    [[nodiscard]] const QImage &newest();

private:
    /// Memory in the alignment that the library draws fast into, and the image that shows it.
    struct Canvas {
        std::unique_ptr<std::byte[], void (*)(std::byte *)> memory{nullptr, nullptr};
        QImage image{};

        void fit(QSize size);
    };

    void run();
    void draw(Canvas &canvas);
    void wake();

    std::function<void()> m_onPicture;
    mpv_render_context *m_renderer = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    QSize m_size{1, 1};
    bool m_mayHavePicture = false;
    bool m_isResized = false;
    bool m_isEnding = false;
    bool m_isReady = false;
    Canvas m_ready{};
    Canvas m_front{}; ///< the main thread's
    Canvas m_back{};  ///< the drawing thread's
    std::thread m_thread;
};

} // namespace tollivar::player
