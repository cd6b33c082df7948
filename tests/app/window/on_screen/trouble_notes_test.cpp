#include "app/window/trouble_notes.h"
#include "tests/support/wait_until.h"

#include <QApplication>
#include <QMessageBox>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

class TroubleNotesTest : public ::testing::Test {
protected:
    static std::vector<QMessageBox *> shown()
    {
        std::vector<QMessageBox *> boxes;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            auto *box = qobject_cast<QMessageBox *>(window);
            if (box != nullptr && box->isVisible()) {
                boxes.push_back(box);
            }
        }
        return boxes;
    }
    /// Waits for a note, closes it, and gives what it said.
    static QString next()
    {
        test::waitUntil("a note", [] { return !shown().empty(); });
        EXPECT_EQ(shown().size(), 1U);
        QMessageBox *box = shown().front();
        const QString text = box->text();
        box->accept();
        return text;
    }

    TroubleNotes m_notes;
};

TEST_F(TroubleNotesTest, oneNoteShowsAtATimeAndNothingWaitsForIt)
{
    m_notes.tell(u"disk full"_s);
    m_notes.tell(u"disk full"_s);
    m_notes.tell(u"damaged"_s);
    EXPECT_EQ(next(), u"disk full"_s);
    EXPECT_EQ(next(), u"damaged"_s);
}

TEST_F(TroubleNotesTest, whatWasJustToldIsNotToldAgain)
{
    m_notes.tell(u"disk full"_s);
    EXPECT_EQ(next(), u"disk full"_s);
    m_notes.tell(u"disk full"_s);
    m_notes.tell(u"other"_s);
    EXPECT_EQ(next(), u"other"_s);
}

TEST_F(TroubleNotesTest, noNoteOutlivesWhoShowsThem)
{
    {
        TroubleNotes notes;
        notes.tell(u"disk full"_s);
        test::waitUntil("a note", [] { return !shown().empty(); });
    }
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

} // namespace
} // namespace tollivar::app
