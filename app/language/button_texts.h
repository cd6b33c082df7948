#pragma once

#include <QTranslator>

#include <functional>

namespace tollivar::language {

/// Gives the buttons that Qt labels by itself, those of message boxes, the language's words. While
/// it lives, the application asks it for each button that is made.
///
/// Threads: the main thread.
/// States:  after the application object is made, and before it goes.
class ButtonTexts final : public QTranslator {
public:
    /// A text of the current language by its id.
    using Text = std::function<QString(const QString &id)>;

    explicit ButtonTexts(Text text);

    [[nodiscard]] QString translate(const char *context, const char *source,
                                    const char *disambiguation, int n) const override;
    [[nodiscard]] bool isEmpty() const override { return false; }

private:
    Text m_text;
};

} // namespace tollivar::language
