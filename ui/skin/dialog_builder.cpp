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

std::optional<SkinElement> readUsable(const SkinSource &source, const QString &fileName,
                                      std::span<const RequiredControl> required)
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
    for (const auto &control : required) {
        if (!internal::holds(*document, control.type, control.name)) {
            CPaintManagerUI::addProblem(
                {fileName, 0,
                 QStringLiteral("there is no %1 named %2").arg(control.type, control.name)});
            return std::nullopt;
        }
    }
    return std::move(*document);
}

} // namespace

QWidget &CDialogBuilder::Create(const QString &fileName, std::span<const RequiredControl> required,
                                QWidget &window, CPaintManagerUI &manager)
{
    SkinElement document;
    for (const auto &source : CPaintManagerUI::sources()) {
        if (auto usable = readUsable(source, fileName, required)) {
            document = std::move(*usable);
            break;
        }
    }
    internal::TreeBuilder builder(fileName, manager);
    auto *root = builder.build(document, window);
    delete window.layout();
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(root);
    manager.AttachDialog(*root, builder.windowLook(document));
    return *root;
}

} // namespace tollivar::DuiLib
