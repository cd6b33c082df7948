#pragma once

#include <QColor>
#include <QLabel>

namespace tollivar::DuiLib {

/// A text of a skin: "{b}bold{/b}" and "{a}link{/a}" are marked, everything else stands as it is,
/// whatever it contains. A text with a link is one stop of the keyboard, where Space follows it.
///
/// Threads: the main thread.
class CTextUI final : public QLabel {
    Q_OBJECT

public:
    explicit CTextUI(QWidget *parent = nullptr);

    void setMarkup(const QString &markup);
    /// One link that is all of `text`, whatever marks that has. It takes two lines at most: what
    /// does not fit is left out in the middle.
    void setLink(const QString &text);
    [[nodiscard]] QString markup() const { return m_markup; }
    /// The colour of links, and their colour below the mouse.
    void setLinkColors(QColor normal, QColor hovered);

    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void linkClicked();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void show(const QString &markup);
    [[nodiscard]] bool hasLink() const;
    void render();

    QString m_markup;
    QString m_link; ///< all there is, when it is not empty
    QColor m_linkColor{0x2d, 0x73, 0xc4};
    QColor m_hoverColor{0x1b, 0x55, 0x9a};
    bool m_isHovered = false;
};

/// The markup as text that a label shows with marks; every other character is made harmless.
[[nodiscard]] QString richText(const QString &markup, const QColor &linkColor, bool underlineLinks);
/// A link that is all of `text`, each of the lines for itself.
[[nodiscard]] QString richLink(const QStringList &lines, const QColor &linkColor,
                               bool underlineLinks);
/// The markup without its marks.
[[nodiscard]] QString plainText(QString markup);

} // namespace tollivar::DuiLib
