#include "companions/clip_player/control_bar.h"

#include "companions/clip_player/bar_slider.h"
#include "companions/clip_player/look.h"
#include "companions/clip_player/time_text.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

#include <limits>

namespace tollivar::player {

using namespace Qt::StringLiterals;

namespace {

constexpr double kMilliseconds = 1'000;
constexpr int kStepMs = 5'000;
constexpr int kIconSize = 22;
constexpr int kVolumeStep = 5;
constexpr int kLoudest = 100;

/// A button whose Space is its own while it has the focus, though the window wants it elsewhere.
class BarButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride &&
            dynamic_cast<QKeyEvent *>(event)->key() == Qt::Key_Space) {
            event->accept();
            return true;
        }
        return QToolButton::event(event);
    }
};

void describe(QToolButton &button, const QString &icon, const QString &name, const QString &key)
{
    constexpr const char *kShownIcon = "shownIcon";
    button.setAccessibleName(name);
    // Called with every state; a new icon would be drawn from its file again.
    if (button.property(kShownIcon).toString() != icon) {
        button.setProperty(kShownIcon, icon);
        button.setIcon(look::icon(icon));
    }
    button.setToolTip(u"%1 (%2)"_s.arg(name, key));
}

int milliseconds(double seconds)
{
    const double limit = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(seconds * kMilliseconds, 0.0, limit));
}

} // namespace

ControlBar::ControlBar(QWidget *parent) : QWidget(parent)
{
    constexpr int kSideMargin = 12;
    constexpr int kSpacing = 6;
    setObjectName(u"bar"_s);
    setAttribute(Qt::WA_StyledBackground);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(kSideMargin, kSpacing + 1, kSideMargin, kSpacing);
    row->setSpacing(kSpacing);

    m_play = addButton(u"play"_s, &ControlBar::playWanted);
    m_position = addTime(u"position"_s);
    m_seek = addSlider(u"seek"_s);
    m_duration = addTime(u"duration"_s);
    row->addSpacing(kSpacing);
    m_mute = addButton(u"mute"_s, &ControlBar::muteWanted);
    m_volume = addSlider(u"volume"_s);
    auto *open = addButton(u"open"_s, &ControlBar::openWanted);
    m_fullScreen = addButton(u"fullScreen"_s, &ControlBar::fullScreenWanted);

    row->setStretchFactor(m_seek, 1);
    m_seek->setSingleStep(kStepMs);
    m_seek->setPageStep(6 * kStepMs);
    m_seek->setAccessibleName(u"Position"_s);
    m_seek->setToolTip(u"Position (Left, Right)"_s);
    m_seek->setHintText([this](int value) {
        return m_seek->isEnabled() ? timeText(value / kMilliseconds) : QString();
    });
    connect(m_seek, &BarSlider::moved, this,
            [this](int value) { Q_EMIT positionWanted(value / kMilliseconds); });
    m_position->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_position->setAccessibleName(u"Time"_s);
    m_duration->setAccessibleName(u"Length"_s);

    m_volume->setRange(0, kLoudest);
    m_volume->setSingleStep(kVolumeStep);
    m_volume->setFixedWidth(m_volume->sizeHint().width());
    m_volume->setAccessibleName(u"Volume"_s);
    m_volume->setToolTip(u"Volume (Up, Down)"_s);
    connect(m_volume, &BarSlider::moved, this, &ControlBar::volumeWanted);

    describe(*open, u"open"_s, u"Open a file"_s, u"Ctrl+O"_s);
    showState({});
    showFullScreen(false);
}

QToolButton *ControlBar::addButton(const QString &name, void (ControlBar::*wanted)())
{
    auto *button = new BarButton(this);
    button->setObjectName(name);
    // A click must not take the window's keys away.
    button->setFocusPolicy(Qt::TabFocus);
    button->setIconSize({kIconSize, kIconSize});
    layout()->addWidget(button);
    connect(button, &QToolButton::clicked, this, wanted);
    return button;
}

BarSlider *ControlBar::addSlider(const QString &name)
{
    auto *slider = new BarSlider(this);
    slider->setObjectName(name);
    layout()->addWidget(slider);
    return slider;
}

QLabel *ControlBar::addTime(const QString &name)
{
    auto *label = new QLabel(this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    layout()->addWidget(label);
    return label;
}

void ControlBar::showState(const PlayerState &state)
{
    const bool isLoaded = state.status == PlayerStatus::Loaded;
    m_play->setEnabled(isLoaded);
    if (state.isPlaying()) {
        describe(*m_play, u"pause"_s, u"Pause"_s, u"Space"_s);
    } else {
        describe(*m_play, u"play"_s, u"Play"_s, u"Space"_s);
    }
    m_seek->setEnabled(isLoaded && state.isSeekable && state.duration.has_value());
    m_seek->setRange(0, milliseconds(state.duration.value_or(0)));
    // While it is dragged it shows where the person is, not where the file is.
    if (!m_seek->isSliderDown()) {
        m_seek->setValue(milliseconds(state.position.value_or(0)));
    }
    m_position->setText(timeText(isLoaded ? state.position : std::nullopt));
    m_duration->setText(timeText(isLoaded ? state.duration : std::nullopt));
    m_position->setMinimumWidth(m_duration->sizeHint().width());
    const bool isSilent = state.isMuted || state.volume <= 0;
    describe(*m_mute, isSilent ? u"muted"_s : u"volume"_s,
             state.isMuted ? u"Sound on"_s : u"Sound off"_s, u"M"_s);
    if (!m_volume->isSliderDown()) {
        m_volume->setValue(qRound(state.volume));
    }
}

void ControlBar::showFullScreen(bool isFullScreen)
{
    describe(*m_fullScreen, isFullScreen ? u"window"_s : u"full-screen"_s,
             isFullScreen ? u"Leave full screen"_s : u"Full screen"_s,
             isFullScreen ? u"Esc"_s : u"F"_s);
}

} // namespace tollivar::player
