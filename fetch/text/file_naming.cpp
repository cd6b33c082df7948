#include "fetch/text/file_naming.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace tollivar::fetch {

namespace {

constexpr QStringView kForbidden = u"\\/:*?\"<>|";
constexpr qsizetype kMaximumNameLength = 80;
constexpr qsizetype kMaximumTypeLength = 32;
constexpr qsizetype kCounterBytes = 6;

/// Programs, scripts, shortcuts, pages and office macros: what a double click would run or follow.
constexpr std::array kDangerousTypes = {
    u"action",    u"apk",     u"app",        u"appimage", u"appinstaller", u"application",
    u"appref-ms", u"appx",    u"bash",       u"bat",      u"bin",          u"chm",
    u"class",     u"cmd",     u"com",        u"command",  u"cpl",          u"csh",
    u"deb",       u"desktop", u"dll",        u"dmg",      u"docm",         u"dotm",
    u"exe",       u"fish",    u"flatpakref", u"gadget",   u"hlp",          u"hta",
    u"htm",       u"html",    u"img",        u"inf",      u"ins",          u"inx",
    u"iso",       u"isp",     u"jar",        u"jnlp",     u"job",          u"js",
    u"jse",       u"ksh",     u"library-ms", u"lnk",      u"lua",          u"mht",
    u"mhtml",     u"msc",     u"msi",        u"msix",     u"msp",          u"mst",
    u"ocx",       u"out",     u"paf",        u"php",      u"phtml",        u"pif",
    u"pkg",       u"pl",      u"potm",       u"ppam",     u"ppsm",         u"pptm",
    u"ps1",       u"ps1xml",  u"psd1",       u"psm1",     u"py",           u"pyc",
    u"pyw",       u"pyz",     u"rb",         u"reg",      u"rgs",          u"rpm",
    u"run",       u"scf",     u"scr",        u"sct",      u"service",      u"settingcontent-ms",
    u"sh",        u"shb",     u"shs",        u"shtml",    u"sldm",         u"so",
    u"svg",       u"svgz",    u"sys",        u"tcsh",     u"u3p",          u"url",
    u"vb",        u"vbe",     u"vbs",        u"vbscript", u"vhd",          u"vhdx",
    u"webloc",    u"website", u"workflow",   u"ws",       u"wsc",          u"wsf",
    u"wsh",       u"xht",     u"xhtml",      u"xlam",     u"xll",          u"xlsb",
    u"xlsm",      u"xltm",    u"xml",        u"xpi",      u"xsl",          u"zsh",
};

bool isLetterOrDigit(QChar character)
{
    // Halves of a pair belong to letters far more often than not, and must not be parted.
    return character.isLetterOrNumber() || character.isSurrogate();
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control ||
           character.category() == QChar::Other_Format || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// The first `length` characters, one less where that would split a pair.
QString firstCharacters(const QString &text, qsizetype length)
{
    if (text.size() <= length) {
        return text;
    }
    return text.left(text[length - 1].isHighSurrogate() ? length - 1 : length);
}

void thinOutBehindFirst(QString &name)
{
    const qsizetype length = name.size();
    for (qsizetype i = 1; i < length && i < name.size() && !isLetterOrDigit(name[i]); ++i) {
        name.remove(i, 1);
    }
}

} // namespace

QString withoutForbiddenCharacters(QString name, QChar replacement)
{
    for (QChar &character : name) {
        if (kForbidden.contains(character)) {
            character = replacement;
        }
    }
    return name;
}

QString cleanName(const QString &title, QChar replacement)
{
    QString name = withoutForbiddenCharacters(title, replacement);
    name.removeIf(isControl);
    name = firstCharacters(name, kMaximumNameLength).trimmed();
    while (!name.isEmpty() && !isLetterOrDigit(name.back())) {
        name.chop(1);
    }
    thinOutBehindFirst(name);
    if (name.isEmpty() || name.compare(u"con", Qt::CaseInsensitive) == 0) {
        return QStringLiteral("ReNamed");
    }
    return name;
}

QString harmlessFileType(const QString &type)
{
    QString clean = withoutForbiddenCharacters(type, u'-');
    clean.removeIf(isControl);
    clean = firstCharacters(clean, kMaximumTypeLength);
    // The desktop ignores blanks and dots at the end, so they would hide what the ending is.
    while (!clean.isEmpty() && (clean.back() == u'.' || clean.back().isSpace())) {
        clean.chop(1);
    }
    if (clean.isEmpty()) {
        return {};
    }
    if (!clean.startsWith(u'.')) {
        clean.prepend(u'.');
    }
    const QString last = clean.mid(clean.lastIndexOf(u'.') + 1).trimmed().toLower();
    const bool isDangerous = std::any_of(kDangerousTypes.begin(), kDangerousTypes.end(),
                                         [&last](QStringView known) { return last == known; });
    return isDangerous ? clean + QStringLiteral(".download") : clean;
}

QString fittingName(const QString &name, const QString &type)
{
    const qsizetype room =
        std::max<qsizetype>(kMaximumNameBytes - type.toUtf8().size() - kCounterBytes, 1);
    QString fitting = firstCharacters(name, kMaximumNameBytes);
    while (fitting.toUtf8().size() > room) {
        fitting = firstCharacters(fitting, fitting.size() - 1);
    }
    return fitting;
}

} // namespace tollivar::fetch
