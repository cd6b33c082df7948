#include "ui/main_window/address_intake.h"

#include "fetch/text/file_naming.h"
#include "fetch/text/site_url.h"
#include "platform/build_config.h"
#include "platform/file_ops.h"
#include "ui/dialog/message_box.h"
#include "ui/dialogs/add_task_dlg.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using platform::AppMessageId;

QString addressIn(const QMimeData &data)
{
    const auto addresses = data.urls();
    if (std::any_of(addresses.begin(), addresses.end(),
                    [](const QUrl &address) { return address.isLocalFile(); })) {
        return {};
    }
    return addresses.isEmpty() ? data.text().section(u'\n', 0, 0).trimmed()
                               : addresses.front().toString();
}

AddressIntake::AddressIntake(QWidget &window, const WindowServices &services)
    : m_window(window)
    , m_services(services)
    , m_inbox([this](const platform::AppMessage &message) { handle(message); })
{
}

AddressIntake::~AddressIntake() = default;

void AddressIntake::handle(const platform::AppMessage &message)
{
    if (message.id == AppMessageId::AddPendingAddress) {
        addPendingAddress();
    } else if (message.id == AppMessageId::CapturedTexts) {
        takeCapturedTexts();
    }
}

void AddressIntake::addAddress(const QString &address)
{
    if (address.isEmpty()) {
        return;
    }
    m_pendingAddresses.append(address);
    m_inbox.port().post(AppMessageId::AddPendingAddress, 0, 0);
}

void AddressIntake::addPendingAddress()
{
    if (m_pendingAddresses.isEmpty()) {
        return;
    }
    const auto task = m_services.taskForAddress(m_pendingAddresses.takeFirst());
    if (task) {
        addNewTask(*task);
    } else {
        qWarning("the address was not added: %s", qPrintable(task.error().text));
    }
}

void AddressIntake::addNewTask(const tasks::TaskInfo &task)
{
    const std::uint32_t id = m_services.manager.addTask(task, tasks::TaskOrigin::New);
    m_services.manager.start(id);
    Q_EMIT tasksAdded();
}

void AddressIntake::addCapturedText(const QString &text)
{
    m_capturedTexts.append(text);
    m_inbox.port().post(AppMessageId::CapturedTexts, 0, 0);
}

void AddressIntake::takeCapturedTexts()
{
    Q_EMIT windowWanted();
    if (m_capturedTexts.isEmpty()) {
        return;
    }
    for (const CapturedMedia &media : m_services.readCapturedText(m_capturedTexts.takeLast())) {
        addCaptured(media);
    }
}

void AddressIntake::addCaptured(const CapturedMedia &media)
{
    if (const auto chosen = askAboutCaptured(media)) {
        storeCaptured(media, *chosen);
        makeRoom();
    }
    // One that the next dialog does not take either comes back.
    const QStringList kept = std::exchange(m_keptAddresses, {});
    for (const QString &address : kept) {
        offerAddress(address, AddressOrigin::Dropped);
    }
}

std::optional<tasks::TaskInfo> AddressIntake::askAboutCaptured(const CapturedMedia &media)
{
    // The one before may have made room, and many desktops hide the dialogs of a mere icon.
    Q_EMIT windowWanted();
    CAddTaskDlg dialog(&m_window, m_services.settings, m_services.texts,
                       {media.task.strOriURL, media.title});
    // One may be open already: then it is asked again when this one is through.
    const QPointer<CAddTaskDlg> below = std::exchange(m_dialog, &dialog);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    m_dialog = below;
    return isAccepted ? std::optional(dialog.task()) : std::nullopt;
}

void AddressIntake::storeCaptured(const CapturedMedia &media, const tasks::TaskInfo &chosen)
{
    tasks::TaskInfo task = media.task;
    task.m_ConvOpts = chosen.m_ConvOpts;
    task.strOutputFolder = folderOfCaptured(chosen.strOutputFolder, media.title, task.strOriURL);
    if (const auto made = platform::makeFolders(task.strOutputFolder); !made) {
        MessageBox::warning(&m_window, QString(platform::build::kProductName),
                            m_services.texts.text(u"strMsgInvalidFolder"_s));
        return;
    }
    task.strOutputName = fetch::cleanName(chosen.strOutputName, u'-');
    addNewTask(task);
}

void AddressIntake::addCapturedRecord(const QString &record)
{
    for (const CapturedMedia &media : m_services.readCapturedText(record)) {
        tasks::TaskInfo chosen;
        chosen.strOutputFolder = m_services.settings.GetLastFolder();
        chosen.strOutputName =
            media.title.isEmpty() ? fetch::nameBeforeTitle(media.task.strOriURL) : media.title;
        storeCaptured(media, chosen);
    }
    m_inbox.port().post(AppMessageId::CapturedTexts, 0, 0);
}

void AddressIntake::offerAddress(const QString &address, AddressOrigin origin)
{
    if (origin == AddressOrigin::Clipboard && m_copiedText.startsWith(address)) {
        return;
    }
    if (openAddTask(address) == DialogResult::Accepted) {
        makeRoom();
    }
}

void AddressIntake::askForAddress()
{
    openAddTask({});
}

AddressIntake::DialogResult AddressIntake::openAddTask(const QString &address)
{
    Q_EMIT windowWanted();
    if (m_dialog != nullptr) {
        m_dialog->raise();
        m_dialog->activateWindow();
        if (!m_dialog->setAddress(address) && !address.isEmpty()) {
            m_keptAddresses.append(address);
        }
        return DialogResult::AlreadyOpen;
    }
    CAddTaskDlg dialog(&m_window, m_services.settings, m_services.texts, {address, {}});
    m_dialog = &dialog;
    if (dialog.exec() != QDialog::Accepted) {
        return DialogResult::Cancelled;
    }
    addNewTask(dialog.task());
    return DialogResult::Accepted;
}

void AddressIntake::makeRoom()
{
    if (m_minimisesAfterwards) {
        m_window.showMinimized();
    }
}

} // namespace tollivar::ui
