// The panel of the capture browser with 1,000 media, drawn off the screen: filling it one by one as
// pages play, one more medium, a repaint, a frame of scrolling. The peer is Qt's own table over the
// same model; the counter gives each time as a part of its limit, a frame of 16 ms.

#include "companions/sniff_browser/media_model.h"
#include "companions/sniff_browser/media_panel.h"

#include <QApplication>
#include <QScrollBar>
#include <QTableView>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar;
using capture::MediaFound;
using Clock = std::chrono::steady_clock;

constexpr int kMedia = 1'000;
constexpr double kFrameLimitMs = 16;

MediaFound medium(int number)
{
    return {.address = u"https://media.example/clips/%1/index.mp4?token=0123456789"_s.arg(number),
            .title = u"Somebody's clip number %1 - the whole story"_s.arg(number),
            .mediaType = u"video/mp4"_s,
            .extension = u".mp4"_s,
            .length = 1'000'000 + number * 7'919LL,
            .page = u"https://videos.example/watch?v=%1"_s.arg(number)};
}

/// What the browser tells when it has seen so many: the newest first.
std::vector<MediaFound> media(int count)
{
    std::vector<MediaFound> all;
    for (int number = count; number > 0; --number) {
        all.push_back(medium(number));
    }
    return all;
}

class Panel {
public:
    explicit Panel(int count)
    {
        m_panel.resize(560, 600);
        m_panel.show();
        m_panel.setMedia(media(count));
        QApplication::processEvents();
    }

    [[nodiscard]] sniff::MediaPanel &panel() { return m_panel; }
    [[nodiscard]] QTreeView &view() { return *m_panel.findChild<QTreeView *>(u"media"_s); }

private:
    sniff::MediaPanel m_panel;
};

/// Qt's table as it comes, with the same texts.
class PlainTable {
public:
    PlainTable()
    {
        m_model.setMedia(media(kMedia));
        m_table.setModel(&m_model);
        m_table.setSelectionBehavior(QAbstractItemView::SelectRows);
        m_table.setVerticalScrollMode(QTableView::ScrollPerPixel);
        m_table.resize(560, 600);
        m_table.show();
        QApplication::processEvents();
    }

    [[nodiscard]] QTableView &table() { return m_table; }
    [[nodiscard]] sniff::MediaModel &model() { return m_model; }

private:
    sniff::MediaModel m_model;
    QTableView m_table;
};

/// Runs `step` in each iteration and lets the windows paint what it changed; each iteration makes
/// `steps` frames.
template<typename Step>
void measure(benchmark::State &state, Step step, int steps = 1)
{
    const auto begin = Clock::now();
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int i = 0; i < steps; ++i) {
            step();
            QApplication::processEvents();
        }
    }
    const double milliseconds =
        std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    state.counters["part_of_limit"] =
        milliseconds / static_cast<double>(state.iterations()) / steps / kFrameLimitMs;
}

/// Each medium is told and painted before the next one comes.
void panelFilledOneByOne(benchmark::State &state)
{
    Panel panel(0);
    int count = 0;
    std::vector<std::vector<MediaFound>> lists;
    for (int i = 1; i <= kMedia; ++i) {
        lists.push_back(media(i));
    }
    measure(
        state, [&] { panel.panel().setMedia(lists[static_cast<std::size_t>(count++ % kMedia)]); },
        kMedia);
}

void panelFilledAtOnce(benchmark::State &state)
{
    Panel panel(0);
    const auto all = media(kMedia);
    measure(state, [&] {
        panel.panel().setMedia({});
        panel.panel().setMedia(all);
    });
}

/// One more medium comes and goes, with so many selected rows, which stay so.
void panelUpdate(benchmark::State &state)
{
    Panel panel(kMedia);
    const auto selected = static_cast<int>(state.range(0));
    QItemSelection rows;
    for (int i = 0; i < selected; ++i) {
        // Every second one, so that no two make one range, as far as there are so many.
        const int row = selected * 2 <= kMedia ? i * 2 : i;
        const QModelIndex index = panel.view().model()->index(row, 0);
        rows.select(index, index.siblingAtColumn(sniff::MediaModel::ColumnCount - 1));
    }
    panel.view().selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    const std::array lists = {media(kMedia), media(kMedia + 1)};
    std::size_t turn = 0;
    measure(state, [&] { panel.panel().setMedia(lists.at(++turn % 2)); });
}

void plainTableUpdate(benchmark::State &state)
{
    PlainTable plain;
    const std::array lists = {media(kMedia), media(kMedia + 1)};
    std::size_t turn = 0;
    measure(state, [&] {
        plain.model().setMedia(lists.at(++turn % 2));
        plain.table().selectRow(0);
    });
}

void panelRepaint(benchmark::State &state)
{
    Panel panel(kMedia);
    measure(state, [&] { panel.view().viewport()->update(); });
}

void plainTableRepaint(benchmark::State &state)
{
    PlainTable plain;
    measure(state, [&] { plain.table().viewport()->update(); });
}

void scrollOn(QAbstractItemView &view)
{
    QScrollBar &bar = *view.verticalScrollBar();
    bar.setValue((bar.value() + 1) % bar.maximum());
}

void panelScroll(benchmark::State &state)
{
    Panel panel(kMedia);
    measure(state, [&] { scrollOn(panel.view()); });
}

void panelSelectAll(benchmark::State &state)
{
    Panel panel(kMedia);
    measure(state, [&] {
        panel.view().clearSelection();
        panel.view().selectAll();
    });
}

constexpr auto kUnit = benchmark::kMillisecond;
BENCHMARK(panelFilledOneByOne)->Unit(kUnit);
BENCHMARK(panelFilledAtOnce)->Unit(kUnit);
BENCHMARK(panelUpdate)->ArgName("selected")->Arg(1)->Arg(kMedia / 2)->Arg(kMedia)->Unit(kUnit);
BENCHMARK(plainTableUpdate)->Unit(kUnit);
BENCHMARK(panelRepaint)->Unit(kUnit);
BENCHMARK(plainTableRepaint)->Unit(kUnit);
BENCHMARK(panelScroll)->Unit(kUnit);
BENCHMARK(panelSelectAll)->Unit(kUnit);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
