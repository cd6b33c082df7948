#include "companions/clip_player/picture_source.h"

#include <mpv/render.h>

#include <cstdlib>

namespace tollivar::player {

namespace {

/// The library's fast paths want rows, and the first of them, at multiples of this many bytes.
constexpr std::size_t kAlignment = 64;
constexpr std::size_t kBytesPerPixel = 4;

std::size_t bytesPerRow(QSize size)
{
    const std::size_t bytes = static_cast<std::size_t>(size.width()) * kBytesPerPixel;
    return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

} // namespace

void PictureSource::Canvas::fit(QSize size)
{
    if (image.size() == size) {
        return;
    }
    const std::size_t row = bytesPerRow(size);
    auto *bytes = static_cast<std::byte *>(
        std::aligned_alloc(kAlignment, row * static_cast<std::size_t>(size.height())));
    image = {};
    memory = {bytes, [](std::byte *start) { std::free(start); }};
    image = QImage(reinterpret_cast<uchar *>(bytes), size.width(), size.height(),
                   static_cast<qsizetype>(row), QImage::Format_RGB32);
}

PictureSource::PictureSource(mpv_handle &core, std::function<void()> onPicture)
    : m_onPicture(std::move(onPicture))
{
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_SW)},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&m_renderer, &core, parameters) < 0) {
        qFatal("the player library cannot draw");
    }
    mpv_render_context_set_update_callback(
        m_renderer, [](void *self) { static_cast<PictureSource *>(self)->wake(); }, this);
    m_thread = std::thread([this] { run(); });
}

PictureSource::~PictureSource()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_one();
    m_thread.join();
    mpv_render_context_free(m_renderer);
}

void PictureSource::setSize(QSize size)
{
    {
        const std::lock_guard lock(m_mutex);
        const QSize wanted = size.expandedTo({1, 1});
        m_isResized = m_isResized || wanted != m_size;
        m_size = wanted;
    }
    m_changed.notify_one();
}

const QImage &PictureSource::newest()
{
    const std::lock_guard lock(m_mutex);
    if (m_isReady) {
        std::swap(m_front, m_ready);
        m_isReady = false;
    }
    return m_front.image;
}

void PictureSource::wake()
{
    {
        const std::lock_guard lock(m_mutex);
        m_mayHavePicture = true;
    }
    m_changed.notify_one();
}

void PictureSource::run()
{
    for (;;) {
        bool isWanted = false;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_isEnding || m_mayHavePicture || m_isResized; });
            if (m_isEnding) {
                return;
            }
            m_mayHavePicture = false;
            isWanted = std::exchange(m_isResized, false);
            m_back.fit(m_size);
        }
        if ((mpv_render_context_update(m_renderer) & MPV_RENDER_UPDATE_FRAME) == 0 && !isWanted) {
            continue;
        }
        draw(m_back);
        {
            const std::lock_guard lock(m_mutex);
            std::swap(m_back, m_ready);
            m_isReady = true;
        }
        m_onPicture();
    }
}

void PictureSource::draw(Canvas &canvas)
{
    std::array<int, 2> size{canvas.image.width(), canvas.image.height()};
    auto row = static_cast<std::size_t>(canvas.image.bytesPerLine());
    // The byte order of RGB32 on the machines we run on.
    constexpr const char *kFormat = "bgr0";
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size.data()},
                                     {MPV_RENDER_PARAM_SW_FORMAT, const_cast<char *>(kFormat)},
                                     {MPV_RENDER_PARAM_SW_STRIDE, &row},
                                     {MPV_RENDER_PARAM_SW_POINTER, canvas.memory.get()},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(m_renderer, parameters);
}

} // namespace tollivar::player
