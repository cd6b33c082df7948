#include "ui/skin/paint_manager.h"

#include "ui/skin/control_class.h"
#include "ui/skin/skin_look.h"
#include "ui/skin/skin_source.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QVariant>

// The linker leaves out what a static library does not ask for by name; the macro only works outside
// of every namespace.
static void useBuiltInSkin()
{
    Q_INIT_RESOURCE(default_skin);
}

namespace tollivar::DuiLib {

namespace {

struct SharedSkin {
    std::vector<SkinSource> sources{SkinSource::builtIn()};
    std::vector<SkinProblem> problems;
};

SharedSkin &sharedSkin()
{
    static SharedSkin skin;
    return skin;
}

void use(const QString &place, const platform::Result<SkinSource> &source)
{
    if (!source) {
        CPaintManagerUI::addProblem({place, 0, source.error().text});
        return;
    }
    sharedSkin().sources = {*source, SkinSource::builtIn()};
    applyLook(sharedSkin().sources);
}

} // namespace

void CPaintManagerUI::SetInstance()
{
    useBuiltInSkin();
    sharedSkin() = SharedSkin();
    applyLook(sharedSkin().sources);
}

void CPaintManagerUI::SetResourceZip(const QString &archive)
{
    use(archive, SkinSource::archive(archive));
}

void CPaintManagerUI::SetResourcePath(const QString &folder)
{
    use(folder, SkinSource::folder(folder));
}

const std::vector<SkinSource> &CPaintManagerUI::sources()
{
    return sharedSkin().sources;
}

QString CPaintManagerUI::imagePath(const QString &name)
{
    for (const auto &source : sources()) {
        QString path = source.imagePath(name);
        if (!path.isEmpty()) {
            return path;
        }
    }
    return {};
}

std::vector<SkinProblem> CPaintManagerUI::takeProblems()
{
    return std::exchange(sharedSkin().problems, {});
}

void CPaintManagerUI::addProblem(SkinProblem problem)
{
    qWarning("skin: %s", qPrintable(problem.toString()));
    sharedSkin().problems.push_back(std::move(problem));
}

void CPaintManagerUI::AttachDialog(QWidget &root, const WindowLook &look)
{
    m_root = &root;
    m_look = look;
}

void CPaintManagerUI::AddNotifier(INotifyUI &notifier)
{
    m_notifiers.push_back(&notifier);
}

void CPaintManagerUI::SendNotify(const SkinEvent &event) const
{
    // A handler may close and destroy the window, and this manager with it.
    const QPointer<QWidget> window(m_window);
    const std::vector<INotifyUI *> notifiers = m_notifiers;
    for (INotifyUI *notifier : notifiers) {
        notifier->Notify(event);
        if (window.isNull()) {
            return;
        }
    }
}

QWidget *CPaintManagerUI::FindControl(const QString &name) const
{
    return m_root == nullptr || name.isEmpty() ? nullptr : m_root->findChild<QWidget *>(name);
}

QWidget *CPaintManagerUI::FindControl(QPoint position) const
{
    if (m_window == nullptr) {
        return nullptr;
    }
    QWidget *found = m_window->childAt(position);
    while (found != nullptr && GetClass(*found).isEmpty()) {
        found = found->parentWidget();
    }
    return found;
}

QString CPaintManagerUI::GetClass(const QWidget &control)
{
    return control.property(kClassProperty).toString();
}

} // namespace tollivar::DuiLib
