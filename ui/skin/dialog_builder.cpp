#include "ui/skin/dialog_builder.h"

#include "ui/skin/internal/control_factory.h"
#include "ui/skin/internal/tree_builder.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/skin_document.h"
#include "ui/skin/skin_source.h"

#include <QLayout>
#include <QVBoxLayout>

#include <memory>
#include <optional>

namespace tollivar::DuiLib {

namespace {

std::optional<SkinElement> read(const SkinSource &source, const QString &fileName)
{
    const auto bytes = source.read(fileName);
    if (!bytes) {
        CPaintManagerUI::addProblem({fileName, 0, bytes.error().text});
        return std::nullopt;
    }
    auto document = readSkinDocument(*bytes, fileName);
    if (!document) {
        CPaintManagerUI::addProblem(document.error());
        return std::nullopt;
    }
    return std::move(*document);
}

/// Looks at what was built, as the window will: elements can be left out of it, hide one another
/// behind the same name, and make other controls than their type tells.
bool hasAll(const QWidget &root, const QString &fileName, std::span<const RequiredControl> required)
{
    for (const auto &[type, name, look] : required) {
        const auto *control = root.findChild<QWidget *>(QString(name));
        if (control == nullptr || !internal::isMadeAs(*control, type, look)) {
            CPaintManagerUI::addProblem(
                {fileName, 0, QStringLiteral("there is no %1 named %2").arg(type, name)});
            return false;
        }
    }
    return true;
}

} // namespace

QWidget &CDialogBuilder::Create(const QString &fileName, std::span<const RequiredControl> required,
                                QWidget &window, CPaintManagerUI &manager)
{
    for (const auto &source : CPaintManagerUI::sources()) {
        const auto document = read(source, fileName);
        if (!document) {
            continue;
        }
        internal::TreeBuilder builder(fileName, manager);
        std::unique_ptr<QWidget> root(builder.build(*document, window));
        if (!hasAll(*root, fileName, required)) {
            continue;
        }
        delete window.layout();
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(root.get());
        manager.AttachDialog(*root, builder.windowLook(*document));
        return *root.release();
    }
    qFatal("the program's own %s cannot be used", qPrintable(fileName));
}

} // namespace tollivar::DuiLib
