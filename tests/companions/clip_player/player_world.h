#pragma once

#include "companions/clip_player/media_player.h"
#include "companions/clip_player/player_window.h"
#include "tests/support/sandbox.h"

#include <gtest/gtest.h>

namespace tollivar::player {

/// A player in its window, off the screen, and media that ffmpeg makes for the case.
class PlayerWorld : public ::testing::Test {
protected:
    PlayerWorld();
    ~PlayerWorld() override;

    /// Four seconds of plain green with a tone, at 96x64, in the format that the ending names.
    [[nodiscard]] QString makeClip(const QString &name, const QStringList &options = {}) const;
    /// The same tone without a picture.
    [[nodiscard]] QString makeSound(const QString &name) const;

    /// Opens it in the window and waits until it plays.
    void play(const QString &path);
    /// Opens it and waits until the window says a sentence, which it returns.
    QString refusal(const QString &path);
    /// The sentence in the window; empty while a picture is shown in its place.
    [[nodiscard]] QString sentence() const;
    /// Waits until the middle of the window has that colour, but for what encoding does to it.
    void waitForColor(const QColor &color);

    [[nodiscard]] MediaPlayer &player() { return *m_player; }
    [[nodiscard]] const PlayerState &state() const { return m_player->state(); }
    [[nodiscard]] PlayerWindow &window() { return *m_window; }
    [[nodiscard]] const test::Sandbox &sandbox() const { return m_sandbox; }

private:
    test::Sandbox m_sandbox;
    std::unique_ptr<MediaPlayer> m_player;
    std::unique_ptr<PlayerWindow> m_window;
};

} // namespace tollivar::player
