#include "platform/build_config.h"
#include "platform/sound.h"

#include <QFile>

#include <canberra.h>

namespace tollivar::platform {

namespace {

struct DestroyContext {
    void operator()(ca_context *context) const { ca_context_destroy(context); }
};

} // namespace

struct Sound::Private {
    std::unique_ptr<ca_context, DestroyContext> context;
};

Sound::Sound() : d(std::make_unique<Private>()) {}

Sound::~Sound() = default;

void Sound::play(const QString &path)
{
    if (!d->context) {
        ca_context *made = nullptr;
        if (ca_context_create(&made) != CA_SUCCESS) {
            return;
        }
        d->context.reset(made);
        ca_context_change_props(made, CA_PROP_APPLICATION_NAME, build::kProductName.data(),
                                nullptr);
    }
    // A failure is not worth a word: a machine without sound is as good as any.
    ca_context_play(d->context.get(), 0, CA_PROP_MEDIA_FILENAME,
                    QFile::encodeName(path).constData(), nullptr);
}

} // namespace tollivar::platform
