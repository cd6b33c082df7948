#include "companions/pageprobe/page_probe.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::capture::FindRequest;
using tollivar::capture::MediaFinder;
using tollivar::capture::MediaFound;
using tollivar::capture::MediaPreference;
using tollivar::platform::AutoResetEvent;
using tollivar::platform::ErrorKind;
using tollivar::platform::failure;
using tollivar::platform::Result;
using tollivar::probe::Finders;
using tollivar::probe::findMedia;

/// Answers what the test says and notes that it was asked.
class ScriptedFinder final : public MediaFinder {
public:
    ScriptedFinder(QStringList &asked, QString name, Result<std::vector<MediaFound>> answer)
        : m_asked(asked)
        , m_name(std::move(name))
        , m_answer(std::move(answer))
    {
    }

    Result<std::vector<MediaFound>> find(const FindRequest & /*request*/,
                                         AutoResetEvent & /*stop*/) override
    {
        m_asked.append(m_name);
        return m_answer;
    }

private:
    QStringList &m_asked;
    QString m_name;
    Result<std::vector<MediaFound>> m_answer;
};

class FindMedia : public ::testing::Test {
protected:
    void add(const QString &name, Result<std::vector<MediaFound>> answer)
    {
        m_finders.push_back(std::make_unique<ScriptedFinder>(m_asked, name, std::move(answer)));
    }

    /// A finder that finds one address.
    void addOne(const QString &name, const QString &address)
    {
        add(name, std::vector<MediaFound>{
                      {.address = address, .title = {}, .mediaType = {}, .extension = {}}});
    }

    /// The address of the best medium; empty when there is none.
    QString find()
    {
        const auto media = findMedia(m_finders, m_request, m_stop);
        return media.empty() ? QString() : media.front().address;
    }

    QStringList m_asked;
    Finders m_finders;
    AutoResetEvent m_stop;
    FindRequest m_request{.address = u"http://site.example/page"_s,
                          .preference = MediaPreference::Video,
                          .deadline = std::chrono::steady_clock::now() + 1h};
};

TEST_F(FindMedia, endsWithTheFirstFinderThatFindsAVideo)
{
    add(u"nothing"_s, std::vector<MediaFound>{});
    addOne(u"video"_s, u"http://site.example/a.mp4"_s);
    addOne(u"later"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/a.mp4");
    EXPECT_EQ(m_asked, (QStringList{u"nothing"_s, u"video"_s}));
}

TEST_F(FindMedia, passesOverAFinderThatFails)
{
    add(u"broken"_s, failure(ErrorKind::TryAgain, u"no browser"_s));
    addOne(u"video"_s, u"http://site.example/a.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/a.mp4");
}

TEST_F(FindMedia, findsNothingWhenNobodyDoes)
{
    add(u"nothing"_s, std::vector<MediaFound>{});
    add(u"broken"_s, failure(ErrorKind::TryAgain, u"x"_s));
    EXPECT_EQ(find(), QString());
}

TEST_F(FindMedia, looksOnForAVideoWhenThereIsOnlyASound)
{
    addOne(u"sound"_s, u"http://site.example/a.mp3"_s);
    addOne(u"video"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/b.mp4");
}

TEST_F(FindMedia, looksOnForAFileWhenThereIsOnlyAPlaylistOrAPiece)
{
    addOne(u"playlist"_s, u"http://site.example/a.m3u8"_s);
    addOne(u"piece"_s, u"http://site.example/a.ts"_s);
    addOne(u"video"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/b.mp4");
}

TEST_F(FindMedia, takesTheSoundWhenThereIsNoVideoAnywhere)
{
    addOne(u"sound"_s, u"http://site.example/a.mp3"_s);
    add(u"nothing"_s, std::vector<MediaFound>{});
    addOne(u"other sound"_s, u"http://site.example/b.mp3"_s);
    EXPECT_EQ(find(), u"http://site.example/a.mp3");
}

TEST_F(FindMedia, takesASoundThatWasAskedFor)
{
    m_request.address = u"http://site.example/a.mp3"_s;
    addOne(u"direct"_s, m_request.address);
    addOne(u"later"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), m_request.address);
}

TEST_F(FindMedia, takesAnAddressThatDoesNotSayWhatItIs)
{
    addOne(u"unknown"_s, u"http://site.example/get?id=1"_s);
    addOne(u"later"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/get?id=1");
}

TEST_F(FindMedia, looksOnForFlashWhereItIsPreferred)
{
    m_request.preference = MediaPreference::Flash;
    addOne(u"video"_s, u"http://site.example/a.mp4"_s);
    addOne(u"flash"_s, u"http://site.example/b.swf"_s);
    EXPECT_EQ(find(), u"http://site.example/b.swf");
}

TEST_F(FindMedia, takesAVideoWhereFlashIsPreferredButNowhere)
{
    m_request.preference = MediaPreference::Flash;
    addOne(u"video"_s, u"http://site.example/a.mp4"_s);
    add(u"nothing"_s, std::vector<MediaFound>{});
    EXPECT_EQ(find(), u"http://site.example/a.mp4");
}

TEST_F(FindMedia, asksNobodyElseOnceItIsToStop)
{
    m_stop.set();
    addOne(u"sound"_s, u"http://site.example/a.mp3"_s);
    addOne(u"later"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), u"http://site.example/a.mp3");
    EXPECT_EQ(m_asked, QStringList{u"sound"_s});
}

TEST_F(FindMedia, asksNobodyElseOnceTheTimeIsUp)
{
    m_request.deadline = std::chrono::steady_clock::now() - 1s;
    add(u"nothing"_s, std::vector<MediaFound>{});
    addOne(u"later"_s, u"http://site.example/b.mp4"_s);
    EXPECT_EQ(find(), QString());
    EXPECT_EQ(m_asked, QStringList{u"nothing"_s});
}

} // namespace
