#include "app/window/updates.h"

#include "app/window/update_download.h"
#include "platform/build_config.h"
#include "platform/clock.h"
#include "platform/open_external.h"
#include "ui/dialog/message_box.h"
#include "ui/dialogs/checking_dlg.h"
#include "update/update_info.h"
#include "update/update_schedule.h"

namespace tollivar::app {

using namespace Qt::StringLiterals;
using update::CheckKind;
using update::UpdateResult;

namespace {

QString serverAddress()
{
    const QString given = qEnvironmentVariable("TOLLIVAR_UPDATE_URL");
    return given.isEmpty() ? QString(platform::build::kUpdateAddress) : given;
}

} // namespace

Updates::Updates(QWidget &owner, const DataPaths &paths, ui::WindowTexts texts)
    : m_owner(owner)
    , m_texts(std::move(texts))
    , m_lastCheck(update::lastCheckTime(paths.update))
    , m_inbox([this](const platform::AppMessage &message) { take(message); })
    , m_checker(std::make_unique<update::UpdateChecker>(
          update::UpdatePlaces{serverAddress(), paths.update, paths.updateInTransit},
          QString(platform::build::kVersion), downloadUpdateInfo, m_inbox.port()))
{
}

Updates::~Updates() = default;

void Updates::checkIfDue(int mode)
{
    setMode(mode);
    if (update::isCheckDue(mode, m_lastCheck, platform::systemClock().wallNow())) {
        m_checker->check(CheckKind::Automatic);
    }
}

void Updates::setMode(int mode)
{
    m_checker->allowAutomatic(update::checksByItself(mode));
}

void Updates::checkNow()
{
    m_checking = std::make_unique<ui::CheckingDialog>(&m_owner, m_texts.dialog);
    m_checking->show();
    m_checker->check(CheckKind::Explicit);
}

void Updates::take(const platform::AppMessage &message)
{
    const auto result = static_cast<UpdateResult>(message.first);
    const bool isAnswer = static_cast<CheckKind>(message.second) == CheckKind::Explicit;
    const bool isAwaited = isAnswer && m_checking != nullptr && m_checking->isVisible();
    // Who asks while a check of the program's own is under way waits for the next one, unless there
    // is news: everybody is told of it, and it is the answer.
    if (m_checking != nullptr && (isAnswer || result == UpdateResult::News)) {
        m_checking->hide();
    }
    switch (result) {
    case UpdateResult::News:
        ask(result);
        break;
    case UpdateResult::NoticedBefore:
        if (isAwaited) {
            ask(result);
        }
        break;
    case UpdateResult::NoUpdate:
        if (isAwaited) {
            ui::MessageBox::information(&m_owner, m_texts.text(u"strUpdater"_s),
                                        m_texts.text(u"strMsgNoUpdate"_s));
        }
        break;
    case UpdateResult::Unreachable:
        if (isAwaited) {
            ui::MessageBox::warning(&m_owner, m_texts.text(u"strUpdater"_s),
                                    m_texts.text(u"strMsgNoServer"_s));
        }
        break;
    }
}

void Updates::ask(UpdateResult result)
{
    const auto info = m_checker->noticed();
    const QString form =
        m_texts.text(result == UpdateResult::News ? u"strMsgUpdateNews"_s : u"strMsgUpdateKnown"_s);
    ui::MessageBox box(ui::MessageBox::Question, m_texts.text(u"strUpdater"_s), {},
                       ui::MessageBox::Yes | ui::MessageBox::No, &m_owner);
    // The answer is from outside, and nothing but text.
    box.setTextFormat(Qt::PlainText);
    box.setText(update::updateQuestion(info, form));
    if (box.exec() == ui::MessageBox::Yes) {
        platform::openAddress(info.page);
    }
}

} // namespace tollivar::app
