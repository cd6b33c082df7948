#include "fetch/output_file.h"

#include "fetch/text/file_naming.h"
#include "fetch/text/unique_file.h"

#include <algorithm>

namespace tollivar::fetch {

using tasks::TaskEventCode;

namespace {

/// From twice this size on, the file system takes memory in larger blocks; on a virtual machine,
/// which has to get those from its host, that made every second download half as dear again.
constexpr std::size_t kSliceSize = 32UL * 1024;

} // namespace

std::unique_ptr<OutputFile> OutputFile::create(tasks::TaskWorker &worker, tasks::TaskInfo &task)
{
    const QString path =
        task.strOutputFolder + fittingName(task.strOutputName, task.strFileType) + task.strFileType;
    auto created = createUniqueFile(path, task.bFileCreated != 0 ? FileReuse::Yes : FileReuse::No,
                                    task.strFileType);
    if (!created) {
        worker.setFailure({.kind = tasks::ErrorKind::CannotCreateFile});
        return nullptr;
    }
    task.bFileCreated = 1;
    worker.post(TaskEventCode::FileCreated);
    // The base name is what stands before the last dot of the path; without a type of its own the
    // task's name may hold that dot, so the name comes from the path itself.
    const QString name =
        created->path.mid(task.strOutputFolder.size()).chopped(task.strFileType.size());
    // The server may have told the type only now.
    const bool isNewType = task.strFileType != worker.record().strFileType;
    if (isNewType || name.compare(task.strOutputName, Qt::CaseInsensitive) != 0) {
        task.strOutputName = name;
        worker.setRecord(task);
        worker.post(TaskEventCode::RecordChanged);
    }
    worker.setRecord(task);
    return std::unique_ptr<OutputFile>(new OutputFile(std::move(created->file)));
}

OutputFile::OutputFile(std::unique_ptr<platform::WritableFile> file)
    : m_file(std::move(file))
    , m_gathered(kSliceSize + kMaximumPiece)
{
}

OutputFile::~OutputFile()
{
    finish();
}

std::span<std::byte> OutputFile::room(std::size_t size)
{
    return std::span(m_gathered).subspan(m_used, std::min(size, kMaximumPiece));
}

void OutputFile::filled(std::size_t bytes)
{
    m_used += bytes;
    // Whole slices only, so that no page of the file is touched twice.
    if (const std::size_t slices = m_used / kSliceSize; slices > 0) {
        write(slices * kSliceSize);
    }
}

bool OutputFile::finish()
{
    write(m_used);
    return m_isIntact;
}

void OutputFile::write(std::size_t bytes)
{
    if (m_isIntact) {
        if (const auto written = m_file->write(std::span(m_gathered).first(bytes)); !written) {
            m_isIntact = false;
            qWarning("a downloaded file could not be written to its end: %s",
                     qPrintable(written.error().text));
        }
    }
    std::copy(m_gathered.begin() + static_cast<std::ptrdiff_t>(bytes),
              m_gathered.begin() + static_cast<std::ptrdiff_t>(m_used), m_gathered.begin());
    m_used -= bytes;
}

} // namespace tollivar::fetch
