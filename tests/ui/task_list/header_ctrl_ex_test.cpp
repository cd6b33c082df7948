#include "tests/support/window_driver.h"
#include "ui/task_list/header_ctrl_ex.h"

#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;
using tasks::SortColumn;
using tasks::SortDirection;

constexpr int kWidth = 100;

class HeaderTest : public ::testing::Test {
protected:
    HeaderTest() : m_header(nullptr)
    {
        m_model.setHorizontalHeaderLabels({u"Name"_s, u"Status"_s, u"Speed"_s});
        m_header.setModel(&m_model);
        m_header.resize(3 * kWidth + 50, m_header.sizeHint().height());
        for (int column = 0; column < 3; ++column) {
            m_header.resizeSection(column, kWidth);
        }
        m_header.show();
    }

    void clickOn(int column) { test::clickAt(*m_header.viewport(), middleOf(column)); }

    [[nodiscard]] QPoint middleOf(int column) const
    {
        return {column * kWidth + kWidth / 2, m_header.height() / 2};
    }

    [[nodiscard]] QImage picture() { return m_header.grab().toImage(); }

    QStandardItemModel m_model;
    CHeaderCtrlEx m_header;
};

TEST_F(HeaderTest, theFirstClickOnAColumnGivesDirectionTwo)
{
    QSignalSpy wanted(&m_header, &CHeaderCtrlEx::sortWanted);
    EXPECT_EQ(m_header.sortDirection(), SortDirection::None);
    clickOn(1);
    EXPECT_EQ(m_header.sortColumn(), 1);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 2);
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].toInt(), 1);
    EXPECT_EQ(wanted[0][1].value<SortDirection>(), SortDirection::Ascending);
}

TEST_F(HeaderTest, furtherClicksTurnTheDirectionAround)
{
    clickOn(1);
    clickOn(1);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 1);
    clickOn(1);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 2);
}

TEST_F(HeaderTest, anotherColumnBeginsWithDirectionTwoAgain)
{
    clickOn(1);
    clickOn(0);
    EXPECT_EQ(m_header.sortColumn(), 0);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 2);
    clickOn(0);
    clickOn(1);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 2);
}

TEST_F(HeaderTest, aFastDoubleClickSortsTwice)
{
    QSignalSpy wanted(&m_header, &CHeaderCtrlEx::sortWanted);
    clickOn(2);
    // What a window system sends for the second press of a double click.
    QTest::mouseDClick(m_header.viewport(), Qt::LeftButton, {}, middleOf(2));
    QTest::mouseRelease(m_header.viewport(), Qt::LeftButton, {}, middleOf(2));
    EXPECT_EQ(wanted.size(), 2);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 1);
}

TEST_F(HeaderTest, aRightClickDoesNotSort)
{
    QSignalSpy wanted(&m_header, &CHeaderCtrlEx::sortWanted);
    test::clickAt(*m_header.viewport(), middleOf(1), Qt::RightButton);
    EXPECT_EQ(wanted.size(), 0);
}

TEST_F(HeaderTest, showsTheOrderItIsTold)
{
    m_header.showOrder({.column = SortColumn::Name, .direction = SortDirection::Descending});
    EXPECT_EQ(m_header.sortColumn(), 1);
    EXPECT_EQ(m_header.sortDirection(), SortDirection::Descending);
    m_header.showOrder({});
    EXPECT_EQ(m_header.sortDirection(), SortDirection::None);
    clickOn(1);
    EXPECT_EQ(static_cast<int>(m_header.sortDirection()), 2);
}

TEST_F(HeaderTest, isAGradientOverAThreePixelLine)
{
    const QImage image = picture();
    const int height = image.height();
    // Beyond the last column nothing is written over it.
    const int x = 3 * kWidth + 20;
    EXPECT_NEAR(image.pixelColor(x, 0).red(), 219, 2);
    EXPECT_NEAR(image.pixelColor(x, height - 4).red(), 188, 6);
    EXPECT_EQ(image.pixelColor(x, height / 2).red(), image.pixelColor(x, height / 2).blue());
    for (int line = 1; line <= 3; ++line) {
        EXPECT_EQ(image.pixelColor(x, height - line), QColor(172, 168, 153));
    }
    EXPECT_NE(image.pixelColor(x, height - 4), QColor(172, 168, 153));
}

TEST_F(HeaderTest, separatesColumnsByADarkAndALightLine)
{
    const QImage image = picture();
    for (int column = 1; column <= 3; ++column) {
        EXPECT_EQ(image.pixelColor(column * kWidth - 2, 5), QColor(150, 150, 150));
        EXPECT_EQ(image.pixelColor(column * kWidth - 1, 5), QColor(209, 209, 209));
    }
}

/// How many pixels of the arrow's color each of its lines has, from the top.
std::vector<int> arrowLines(const QImage &image, int column)
{
    const QColor color(82, 90, 102);
    std::vector<int> lines;
    for (int y = 0; y < image.height(); ++y) {
        int count = 0;
        for (int x = (column + 1) * kWidth - 20; x < (column + 1) * kWidth; ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
        if (count > 0) {
            lines.push_back(count);
        }
    }
    return lines;
}

TEST_F(HeaderTest, theArrowIsFourSteppedLinesByTheDirection)
{
    EXPECT_EQ(arrowLines(picture(), 1), std::vector<int>{});
    clickOn(1);
    EXPECT_EQ(arrowLines(picture(), 1), (std::vector{1, 3, 5, 7}));
    EXPECT_EQ(arrowLines(picture(), 0), std::vector<int>{});
    clickOn(1);
    EXPECT_EQ(arrowLines(picture(), 1), (std::vector{7, 5, 3, 1}));
}

TEST_F(HeaderTest, growsWithItsFont)
{
    const int small = m_header.sizeHint().height();
    QFont font = m_header.font();
    font.setPixelSize(60);
    m_header.setFont(font);
    EXPECT_GT(m_header.sizeHint().height(), small);
    EXPECT_GE(m_header.sizeHint().height(), 60);
}

} // namespace
} // namespace tollivar::ui
