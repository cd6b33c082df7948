#include "app/language/button_texts.h"
#include "app/language/languages.h"
#include "tests/support/sandbox.h"

#include <QAbstractButton>
#include <QMessageBox>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

QStringList buttonsOf(QMessageBox::StandardButtons buttons)
{
    const QMessageBox box(QMessageBox::Question, {}, {}, buttons);
    QStringList texts;
    for (const QAbstractButton *button : box.buttons()) {
        texts.append(button->text());
    }
    texts.sort();
    return texts;
}

TEST(BoxButtons, speakTheLanguageThatIsChosenNow)
{
    const test::Sandbox sandbox;
    sandbox.write(u"Language/a.ini"_s, "[INFO]\nLanguage=A\n[STRING]\nstrYes=&Ja\nstrNo=&Nein\n"
                                       "strOK=Gut\nstrCancel=Abbrechen\nstrRetry=Wieder\n");
    const settings::SettingsStore settings(sandbox.file(u"settings.ini"_s));
    language::Languages languages(settings, sandbox.file(u"Language"_s));
    languages.load();
    const language::ButtonTexts texts([&](const QString &id) { return languages.text(id); });
    constexpr auto kAll = QMessageBox::Yes | QMessageBox::No | QMessageBox::Ok |
                          QMessageBox::Cancel | QMessageBox::Retry;
    EXPECT_EQ(buttonsOf(kAll),
              (QStringList{u"&No"_s, u"&Yes"_s, u"Cancel"_s, u"OK"_s, u"Retry"_s}));
    languages.apply(u"A"_s);
    EXPECT_EQ(buttonsOf(kAll),
              (QStringList{u"&Ja"_s, u"&Nein"_s, u"Abbrechen"_s, u"Gut"_s, u"Wieder"_s}));
}

} // namespace
} // namespace tollivar::app
