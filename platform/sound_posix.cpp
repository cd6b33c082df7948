#include "platform/build_config.h"
#include "platform/sound.h"
#include "platform/worker_thread.h"

#include <QFile>

#include <canberra.h>

namespace tollivar::platform {

/// Touched by one thread at a time, the one that hands a sound over.
struct Sound::Service {
    /// Left to the end of the program: destroyed while a sound is to be heard, it takes the
    /// driver's code away from under the thread that plays, and the program crashes.
    ca_context *context = nullptr;

    void play(const QByteArray &path);
};

void Sound::Service::play(const QByteArray &path)
{
    if (context == nullptr) {
        if (ca_context_create(&context) != CA_SUCCESS) {
            context = nullptr;
            return;
        }
        ca_context_change_props(context, CA_PROP_APPLICATION_NAME, build::kProductName.data(),
                                nullptr);
    }
    // A failure is not worth a word: a machine without sound is as good as any.
    ca_context_play(context, 0, CA_PROP_MEDIA_FILENAME, path.constData(), nullptr);
}

Sound::Sound() : m_service(std::make_shared<Service>()) {}

Sound::~Sound() = default;

void Sound::play(const QString &path)
{
    if (isBusy()) {
        return;
    }
    m_thread = std::make_unique<WorkerThread>(
        [service = m_service, file = QFile::encodeName(path)] { service->play(file); });
    if (!m_thread->resume()) {
        // As on a machine without sound.
        m_thread.reset();
    }
}

bool Sound::isBusy() const
{
    return m_thread && !m_thread->hasEnded();
}

} // namespace tollivar::platform
