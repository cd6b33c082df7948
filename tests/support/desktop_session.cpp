#include "tests/support/desktop_session.h"

#include "tests/support/wait_until.h"

#include <QMap>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include <sys/prctl.h>

namespace tollivar::test {

namespace {

constexpr int kLimitMs = 60'000;

/// Starts a program that ends with the test, however that ends.
void start(QProcess &process, const QString &program, const QStringList &arguments)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForStarted()) << program.toStdString() << " is not installed";
}

} // namespace

/// Another program that something can be dragged from.
class DesktopSession::DragSource {
public:
    DragSource(const DesktopSession &desktop, const QStringList &dragged) : m_desktop(desktop)
    {
        start(m_process, QStringLiteral(TOLLIVAR_DRAG_SOURCE), dragged);
    }
    ~DragSource()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    DragSource(const DragSource &) = delete;
    DragSource &operator=(const DragSource &) = delete;

    void pullTo(QPoint target) const
    {
        const QString window = m_desktop.waitForWindow(QStringLiteral("^Drag source$"));
        m_desktop.act({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window});
        const QPoint begin = m_desktop.place(window).center();
        m_desktop.pull(begin, target - begin);
    }
    void waitFor(const char *word)
    {
        waitUntil(word, [&] { return hasSaid(word); });
    }
    /// Moves about there until what is there has seen the drag: it begins at its own pace, and
    /// moves before are not followed.
    void waitUntilWelcome(QPoint target)
    {
        int steps = 0;
        waitUntil("welcome", [&] {
            m_desktop.moveTo(target + QPoint(++steps % 2, 0));
            return hasSaid("welcome");
        });
    }

private:
    bool hasSaid(const char *word)
    {
        m_process.waitForReadyRead(0);
        m_said += m_process.readAllStandardOutput();
        return m_said.contains(word);
    }

    const DesktopSession &m_desktop;
    QProcess m_process;
    QByteArray m_said;
};

DesktopSession::DesktopSession(const Sandbox &sandbox)
    : m_oldDisplay(qgetenv("DISPLAY"))
    , m_oldPlatform(qgetenv("QT_QPA_PLATFORM"))
{
    // The server chooses a free number itself and tells it. It must not start anew when the last
    // of its clients leaves, which here is every tool that only asks.
    start(m_server, QStringLiteral("Xvfb"),
          {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
           QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-noreset"),
           QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    EXPECT_TRUE(m_server.waitForReadyRead(kLimitMs));
    qputenv("DISPLAY", ":" + m_server.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), sandbox.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), sandbox.path());
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), sandbox.path());
    m_manager.setProcessEnvironment(environment);
    start(m_manager, QStringLiteral("openbox"), {});
    waitUntil("the window manager",
              [this] { return !ask({QStringLiteral("get_num_desktops")}).isEmpty(); });
}

DesktopSession::~DesktopSession()
{
    m_dragSource.reset();
    for (QProcess *process : {&m_watcher, &m_copier, &m_tray, &m_manager, &m_server}) {
        process->kill();
        process->waitForFinished();
    }
    qputenv("DISPLAY", m_oldDisplay);
    qputenv("QT_QPA_PLATFORM", m_oldPlatform);
}

QByteArray DesktopSession::ask(const QStringList &arguments) const
{
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    EXPECT_TRUE(tool.waitForFinished(kLimitMs)) << arguments.join(u' ').toStdString();
    return tool.exitCode() == 0 ? tool.readAllStandardOutput().trimmed() : QByteArray();
}

void DesktopSession::act(const QStringList &arguments) const
{
    static_cast<void>(ask(arguments));
}

QString DesktopSession::window(const QString &title) const
{
    const QByteArray found = ask({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), title});
    return QString::fromLatin1(found.split('\n').front());
}

qsizetype DesktopSession::windowCount(const QString &title) const
{
    const QByteArray found = ask({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), title});
    return found.isEmpty() ? 0 : found.count('\n') + 1;
}

qsizetype DesktopSession::tipCount() const
{
    const auto windows = ask({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                              QStringLiteral("--class"), QStringLiteral("Tollivar")})
                             .split('\n');
    return std::count_if(windows.begin(), windows.end(), [this](const QByteArray &window) {
        return !window.isEmpty() &&
               property(QString::fromLatin1(window), QStringLiteral("_NET_WM_WINDOW_TYPE"))
                   .contains("TOOLTIP");
    });
}

QString DesktopSession::waitForWindow(const QString &title) const
{
    QString found;
    waitUntil(qPrintable(title), [&] {
        found = window(title);
        return !found.isEmpty();
    });
    return found;
}

void DesktopSession::startTray()
{
    start(m_tray, QStringLiteral("trayer"),
          {QStringLiteral("--edge"), QStringLiteral("bottom"), QStringLiteral("--align"),
           QStringLiteral("left"), QStringLiteral("--widthtype"), QStringLiteral("percent"),
           QStringLiteral("--width"), QStringLiteral("100"), QStringLiteral("--height"),
           QStringLiteral("40"), QStringLiteral("--SetDockType"), QStringLiteral("true"),
           QStringLiteral("--SetPartialStrut"), QStringLiteral("true")});
    waitUntil("the tray's place", [] {
        QProcess tool;
        tool.start(QStringLiteral("xprop"),
                   {QStringLiteral("-root"), QStringLiteral("_NET_WORKAREA")});
        return tool.waitForFinished(kLimitMs) && tool.readAllStandardOutput().contains(" 984");
    });
}

QString DesktopSession::active() const
{
    return QString::fromLatin1(ask({QStringLiteral("getactivewindow")}));
}

QByteArray DesktopSession::property(const QString &window, const QString &name) const
{
    QProcess tool;
    tool.start(QStringLiteral("xprop"), {QStringLiteral("-id"), window, name});
    EXPECT_TRUE(tool.waitForFinished(kLimitMs));
    return tool.readAllStandardOutput().trimmed();
}

QRect DesktopSession::place(const QString &window) const
{
    QMap<QByteArray, int> values;
    const auto lines =
        ask({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window}).split('\n');
    for (const QByteArray &line : lines) {
        const auto parts = line.split('=');
        values.insert(parts.value(0), parts.value(1).toInt());
    }
    return {values["X"], values["Y"], values["WIDTH"], values["HEIGHT"]};
}

void DesktopSession::click(QPoint place, int button) const
{
    act({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
         QStringLiteral("click"), QString::number(button)});
}

void DesktopSession::doubleClick(QPoint place) const
{
    act({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
         QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
         QStringLiteral("--delay"), QStringLiteral("50"), QStringLiteral("1")});
}

void DesktopSession::drag(const QString &window, QPoint from, QPoint way) const
{
    const QRect before = place(window);
    moveTo(from);
    act({QStringLiteral("mousedown"), QStringLiteral("1")});
    // The program hands the window over at its own pace; what moves before is not followed.
    int steps = 0;
    waitUntil("the window to follow", [&] {
        ++steps;
        moveTo(from + way * (1 + steps % 2) / 4);
        return place(window) != before;
    });
    moveTo(from + way);
    letGo();
    settle();
}

void DesktopSession::settle() const
{
    // The window manager takes one thing after the other: once it has answered this, it has seen
    // all that came before.
    const auto desktops = [this] { return ask({QStringLiteral("get_num_desktops")}).toInt(); };
    const int wanted = desktops() + 1;
    act({QStringLiteral("set_num_desktops"), QString::number(wanted)});
    waitUntil("the window manager", [&] { return desktops() == wanted; });
}

void DesktopSession::moveTo(QPoint place) const
{
    act({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y())});
}

void DesktopSession::pull(QPoint place, QPoint way) const
{
    constexpr int kSteps = 10;
    act({QStringLiteral("mousemove"), QString::number(place.x()), QString::number(place.y()),
         QStringLiteral("mousedown"), QStringLiteral("1")});
    for (int step = 1; step <= kSteps; ++step) {
        const QPoint next = place + way * step / kSteps;
        moveTo(next);
    }
}

void DesktopSession::letGo() const
{
    act({QStringLiteral("mouseup"), QStringLiteral("1")});
}

QString DesktopSession::startOther()
{
    m_dragSource.reset();
    m_dragSource =
        std::make_unique<DragSource>(*this, QStringList{QStringLiteral("text"), QString()});
    QString window = waitForWindow(QStringLiteral("^Drag source$"));
    act({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window});
    waitUntil("another program's keyboard", [&] { return active() == window; });
    return window;
}

void DesktopSession::watchScreen()
{
    start(m_watcher, QStringLiteral("xev"),
          {QStringLiteral("-root"), QStringLiteral("-event"), QStringLiteral("substructure"),
           QStringLiteral("-event"), QStringLiteral("property")});
    // It watches once it sees that something changes.
    waitUntil("the watch", [this] {
        settle();
        return settlingsSeen() > 0;
    });
    m_shownBefore = m_watched.count("MapNotify event");
}

qsizetype DesktopSession::windowsShown()
{
    // It sees things in the order in which the window manager did them.
    const qsizetype before = settlingsSeen();
    settle();
    waitUntil("what was to be seen", [&] { return settlingsSeen() > before; });
    return m_watched.count("MapNotify event") - m_shownBefore;
}

qsizetype DesktopSession::settlingsSeen()
{
    m_watcher.waitForReadyRead(0);
    m_watched += m_watcher.readAllStandardOutput();
    return m_watched.count("(_NET_NUMBER_OF_DESKTOPS), time");
}

void DesktopSession::copy(const QString &text)
{
    m_copier.kill();
    m_copier.waitForFinished();
    start(m_copier, QStringLiteral("xclip"),
          {QStringLiteral("-quiet"), QStringLiteral("-selection"), QStringLiteral("clipboard")});
    m_copier.write(text.toUtf8());
    m_copier.closeWriteChannel();
}

QByteArray DesktopSession::copied() const
{
    QProcess reader;
    reader.start(QStringLiteral("xclip"),
                 {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard")});
    reader.waitForFinished();
    return reader.readAllStandardOutput();
}

// The last source stays: who took something asks it for the contents afterwards.

void DesktopSession::dropText(const QString &text, QPoint target)
{
    m_dragSource.reset();
    m_dragSource = std::make_unique<DragSource>(*this, QStringList{QStringLiteral("text"), text});
    m_dragSource->pullTo(target);
    m_dragSource->waitUntilWelcome(target);
    letGo();
    m_dragSource->waitFor("taken");
}

void DesktopSession::dropFileInVain(const QString &path, QPoint target)
{
    m_dragSource.reset();
    m_dragSource = std::make_unique<DragSource>(*this, QStringList{QStringLiteral("file"), path});
    m_dragSource->pullTo(target);
    letGo();
    m_dragSource->waitFor("refused");
}

void DesktopSession::close(const QString &window) const
{
    // Not by the window manager's own key: it misses that while it learns a new keyboard.
    QProcess tool;
    tool.start(QStringLiteral("wmctrl"), {QStringLiteral("-i"), QStringLiteral("-c"), window});
    EXPECT_TRUE(tool.waitForFinished(kLimitMs) && tool.exitCode() == 0);
}

void DesktopSession::press(const QString &window, const QString &keys) const
{
    act({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window, QStringLiteral("key"),
         keys});
}

} // namespace tollivar::test
