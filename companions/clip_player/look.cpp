#include "companions/clip_player/look.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QStyleFactory>

/// Outside every namespace, as the macro wants it.
static void loadIcons()
{
    Q_INIT_RESOURCE(clip_player_icons);
    Q_INIT_RESOURCE(clip_player_logo);
}

namespace tollivar::player::look {

using namespace Qt::StringLiterals;

namespace {

const QString kStyleSheet = uR"(
#bar { background: #1b1f25; border-top: 1px solid #272d35; }
#bar QToolButton { background: transparent; border: 2px solid transparent; border-radius: 8px; padding: 5px; }
#bar QToolButton:hover { background: #2a3039; }
#bar QToolButton:pressed { background: #353d48; }
#bar QToolButton:focus { border-color: #4a7fb5; }
#bar QLabel { color: #aab4c0; }
#bar QLabel#position { color: #e8ecf1; }
#message { background: #13161a; }
#message QLabel#sentence { color: #e8ecf1; font-size: 13pt; }
#message QLabel#hint { color: #8b96a3; font-size: 10pt; }
QToolTip { background: #2a3039; color: #e8ecf1; border: 1px solid #3e454f; padding: 3px 6px; }
)"_s;

} // namespace

void wear(QApplication &application)
{
    QPalette palette;
    const QColor raised(38, 43, 51);
    const QColor faint(120, 129, 140);
    palette.setColor(QPalette::Window, QColor(27, 31, 37));
    palette.setColor(QPalette::Base, kPage);
    palette.setColor(QPalette::AlternateBase, raised);
    palette.setColor(QPalette::Button, raised);
    palette.setColor(QPalette::Highlight, QColor(45, 115, 196));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
        palette.setColor(role, kText);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    application.setStyle(QStyleFactory::create(u"Fusion"_s));
    application.setPalette(palette);
    application.setStyleSheet(kStyleSheet);
}

QIcon icon(const QString &name)
{
    loadIcons();
    QIcon icon(u":/clip_player/%1.svg"_s.arg(name));
    const QString off = u":/clip_player/%1-off.svg"_s.arg(name);
    if (QFile::exists(off)) {
        icon.addFile(off, {}, QIcon::Disabled);
    }
    return icon;
}

} // namespace tollivar::player::look
