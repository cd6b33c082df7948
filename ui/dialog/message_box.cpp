#include "ui/dialog/message_box.h"

#include "ui/dialog/round_corners.h"
#include "ui/dialog/window_frame.h"
#include "ui/skin/control_class.h"
#include "ui/skin/text_ui.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

/// The grid of the skin's own dialogs.
constexpr int kFrame = 1;
constexpr int kCaption = 42; ///< with the frame above it
constexpr int kBand = 64;
constexpr int kSide = 24;
constexpr int kAboveText = 20;
constexpr int kBetween = 16;
constexpr int kButton = 34;
constexpr QSize kCorner(9, 9);

/// A part of the face, which style sheets find as they find it in a skin's dialog.
template<typename Part>
Part *part(QWidget *parent, QLatin1StringView className, const QString &look)
{
    auto *made = new Part(parent);
    made->setProperty(DuiLib::kClassProperty, QString(className));
    made->setProperty("look", look);
    made->setAttribute(Qt::WA_StyledBackground);
    return made;
}

} // namespace

MessageBox::MessageBox(Icon icon, const QString &title, const QString &text,
                       StandardButtons buttons, QWidget *owner)
    : QMessageBox(icon, title, text, buttons, owner, Qt::Dialog | Qt::FramelessWindowHint)
{
    prepareRoundCorners(*this);
    m_manager.Init(*this);
    makeFace();
    DuiLib::WindowLook look;
    look.caption = QMargins(0, 0, 0, kCaption);
    look.roundCorner = kCorner;
    m_manager.AttachDialog(*m_face, look);
    new WindowFrame(*this, m_manager);
}

void MessageBox::makeFace()
{
    constexpr QMargins kInside(16, 0, 7, 0);
    constexpr QSize kCloseSize(38, 28);
    constexpr QSize kIconSize(16, 16);
    m_face = part<QWidget>(this, "WindowUI"_L1, u"dialog"_s);
    m_band = part<QWidget>(m_face, "HorizontalLayoutUI"_L1, u"buttons"_s);
    m_caption = part<QWidget>(m_face, "HorizontalLayoutUI"_L1, u"caption"_s);
    auto *row = new QHBoxLayout(m_caption);
    row->setContentsMargins(kInside);
    auto *title = part<DuiLib::CTextUI>(m_caption, DuiLib::kTextClass, u"caption"_s);
    title->setObjectName(u"textCaption"_s);
    title->setMarkup(windowTitle());
    connect(this, &QWidget::windowTitleChanged, title, &DuiLib::CTextUI::setMarkup);
    auto *close = part<QToolButton>(m_caption, DuiLib::kButtonClass, u"close"_s);
    close->setIcon(QIcon(DuiLib::CPaintManagerUI::imagePath(u"img/close.svg"_s)));
    close->setIconSize(kIconSize);
    close->setFixedSize(kCloseSize);
    close->setFocusPolicy(Qt::NoFocus);
    const QString name = QCoreApplication::translate("QPlatformTheme", "Close");
    close->setAccessibleName(name);
    close->setToolTip(name);
    connect(close, &QToolButton::clicked, this, &QWidget::close);
    row->addWidget(title);
    row->addStretch();
    row->addWidget(close);
    m_face->lower();
}

void MessageBox::showEvent(QShowEvent *event)
{
    arrange();
    QMessageBox::showEvent(event);
}

void MessageBox::arrange()
{
    constexpr int kTextWidth = 260;
    constexpr int kAroundButton = (kBand - kButton) / 2;
    // Qt lays the box out anew for some of what it is told, so this waits until it is shown.
    setContentsMargins(kSide, kCaption + kAboveText, kSide, kFrame + kAroundButton);
    layout()->setContentsMargins({});
    auto *grid = qobject_cast<QGridLayout *>(layout());
    auto *text = findChild<QLabel *>(u"qt_msgbox_label"_s);
    if (grid != nullptr && text != nullptr) {
        // On a small screen Qt would make lines of two words.
        int row = 0;
        int column = 0;
        int span = 0;
        grid->getItemPosition(grid->indexOf(text), &row, &column, &span, &span);
        grid->setColumnMinimumWidth(column, std::min(kTextWidth, text->sizeHint().width()));
    }
    if (auto *buttons = findChild<QDialogButtonBox *>()) {
        buttons->setContentsMargins(0, kBetween + kAroundButton, 0, 0);
    }
}

void MessageBox::resizeEvent(QResizeEvent *event)
{
    QMessageBox::resizeEvent(event);
    m_face->setGeometry(rect());
    const QRect inside = rect().adjusted(kFrame, kFrame, -kFrame, -kFrame);
    m_caption->setGeometry(inside.left(), inside.top(), inside.width(), kCaption - kFrame);
    m_band->setGeometry(inside.left(), inside.bottom() - kBand + 1, inside.width(), kBand);
    setWindowShape(*this, windowOutline(*this, kCorner));
}

QMessageBox::StandardButton MessageBox::information(QWidget *owner, const QString &title,
                                                    const QString &text, StandardButtons buttons)
{
    MessageBox box(Information, title, text, buttons, owner);
    return static_cast<StandardButton>(box.exec());
}

QMessageBox::StandardButton MessageBox::question(QWidget *owner, const QString &title,
                                                 const QString &text, StandardButtons buttons)
{
    MessageBox box(Question, title, text, buttons, owner);
    return static_cast<StandardButton>(box.exec());
}

QMessageBox::StandardButton MessageBox::warning(QWidget *owner, const QString &title,
                                                const QString &text, StandardButtons buttons)
{
    MessageBox box(Warning, title, text, buttons, owner);
    return static_cast<StandardButton>(box.exec());
}

} // namespace tollivar::ui
