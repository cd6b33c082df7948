#include "fetch/output_file.h"

#include "fetch/text/file_naming.h"
#include "fetch/text/unique_file.h"

namespace tollivar::fetch {

using tasks::TaskEventCode;

namespace {

constexpr std::size_t kSliceSize = 256UL * 1024;

} // namespace

std::unique_ptr<OutputFile> OutputFile::create(tasks::TaskWorker &worker, tasks::TaskInfo &task)
{
    const QString path =
        task.strOutputFolder + fittingName(task.strOutputName, task.strFileType) + task.strFileType;
    auto created = createUniqueFile(path, task.bFileCreated != 0 ? FileReuse::Yes : FileReuse::No);
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
    if (name.compare(task.strOutputName, Qt::CaseInsensitive) != 0) {
        task.strOutputName = name;
        worker.setRecord(task);
        worker.post(TaskEventCode::RecordChanged);
    }
    worker.setRecord(task);
    return std::unique_ptr<OutputFile>(new OutputFile(std::move(created->file)));
}

OutputFile::OutputFile(std::unique_ptr<platform::WritableFile> file) : m_file(std::move(file))
{
    m_gathered.reserve(kSliceSize);
}

OutputFile::~OutputFile()
{
    flush();
}

void OutputFile::write(std::span<const std::byte> bytes)
{
    if (m_gathered.size() + bytes.size() > kSliceSize) {
        flush();
    }
    m_gathered.insert(m_gathered.end(), bytes.begin(), bytes.end());
}

void OutputFile::flush()
{
    if (m_isIntact) {
        m_isIntact = m_file->write(m_gathered);
        if (!m_isIntact) {
            qWarning("a downloaded file could not be written to its end");
        }
    }
    m_gathered.clear();
}

} // namespace tollivar::fetch
