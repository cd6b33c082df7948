#include "companions/clip_player/local_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace tollivar::player {

using namespace Qt::StringLiterals;
using platform::ErrorKind;

namespace {

constexpr qint64 kBeginning = 1'024;
constexpr qsizetype kShownLength = 80;

/// How the formats begin, in lower case.
constexpr const char *kListBeginnings[] = {
    "#extm3u",   "[playlist]", "[reference]", "<asx",     "<?wpl",   "<smil", "<mpd",
    "<playlist", "# mpv edl",  "mplayer edl", "ffconcat", "v=0\r\n", "v=0\n", "rtsptextrtsp:"};

platform::Result<QString> refused(const QString &sentence)
{
    return platform::failure(ErrorKind::AskUser, sentence);
}

bool looksLikeAddress(const QString &name)
{
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]*://"_s);
    return scheme.match(name).hasMatch();
}

} // namespace

bool isListOfFiles(QByteArrayView beginning, const QString &ending)
{
    static const QStringList endings = {u"m3u"_s, u"m3u8"_s, u"pls"_s, u"asx"_s,  u"wpl"_s,
                                        u"cue"_s, u"edl"_s,  u"mpd"_s, u"xspf"_s, u"sdp"_s};
    if (endings.contains(ending, Qt::CaseInsensitive)) {
        return true;
    }
    QByteArray text =
        beginning.first(std::min<qsizetype>(beginning.size(), kBeginning)).toByteArray();
    if (text.startsWith("\xEF\xBB\xBF")) {
        text.remove(0, 3);
    }
    text = text.toLower();
    while (!text.isEmpty() && QByteArrayView(" \t\r\n").contains(text.front())) {
        text.remove(0, 1);
    }
    // An XML list begins with its declaration; the element that says what it is follows.
    if (text.startsWith("<?xml")) {
        text = text.mid(std::max<qsizetype>(text.indexOf("?>"), 0) + 2).trimmed();
    }
    return std::any_of(std::begin(kListBeginnings), std::end(kListBeginnings),
                       [&](const char *known) { return text.startsWith(known); });
}

platform::Result<QString> playableFile(const QString &name)
{
    const QFileInfo info(QDir::current().absoluteFilePath(name));
    const QString shown = shownName(name);
    if (!info.exists()) {
        return refused(looksLikeAddress(name)
                           ? u"Only files on this computer can be played, not addresses."_s
                           : u"“%1” does not exist."_s.arg(shown));
    }
    if (info.isDir()) {
        return refused(u"“%1” is a folder, not a file."_s.arg(shown));
    }
    if (!info.isFile()) {
        return refused(u"“%1” is not an ordinary file."_s.arg(shown));
    }
    QFile file(info.absoluteFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
        return refused(u"“%1” may not be read."_s.arg(shown));
    }
    const QByteArray beginning = file.read(kBeginning);
    if (beginning.isEmpty()) {
        return refused(u"“%1” is empty."_s.arg(shown));
    }
    if (isListOfFiles(beginning, info.suffix())) {
        return refused(u"“%1” only names other files; open one of those."_s.arg(shown));
    }
    return info.absoluteFilePath();
}

QString draggedFile(const QMimeData &data)
{
    const QList<QUrl> addresses = data.urls();
    return addresses.size() == 1 && addresses.front().isLocalFile()
               ? addresses.front().toLocalFile()
               : QString();
}

QString shownName(const QString &path)
{
    QString name = QFileInfo(path).fileName();
    if (name.isEmpty()) {
        name = path;
    }
    for (QChar &letter : name) {
        // Also what would turn the direction of the text around it.
        if (!letter.isPrint() && !letter.isSurrogate()) {
            letter = u' ';
        }
    }
    name = name.simplified();
    if (name.size() <= kShownLength) {
        return name;
    }
    const qsizetype half = kShownLength / 2;
    return name.first(half) + u'…' + name.last(half);
}

} // namespace tollivar::player
