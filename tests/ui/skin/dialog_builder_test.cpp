#include "tests/support/sandbox.h"
#include "tests/support/window_driver.h"
#include "ui/skin/dialog_builder.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/skin_event.h"
#include "ui/skin/text_ui.h"
#include "ui/skin/window_ctrl_ui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

/// Windows built from a skin that the test writes.
class DialogBuilderTest : public ::testing::Test, public INotifyUI {
protected:
    void SetUp() override { CPaintManagerUI::SetInstance(); }
    void TearDown() override { CPaintManagerUI::SetInstance(); }

    void Notify(const SkinEvent &event) override
    {
        m_events.append(QString(event.type) + u' ' + event.name);
    }

    QWidget &build(const QByteArray &content, std::span<const RequiredControl> required = {})
    {
        return buildFile(u"Test.xml"_s, "<Window size=\"300,200\">" + content + "</Window>",
                         required);
    }

    QWidget &buildFile(const QString &name, const QByteArray &xml,
                       std::span<const RequiredControl> required = {})
    {
        m_sandbox.write(u"skin/"_s + name, xml);
        m_sandbox.write(u"skin/skin.qss"_s, "QWidget { color: black; }");
        CPaintManagerUI::SetResourcePath(m_sandbox.file(u"skin"_s));
        m_manager.Init(m_window);
        QWidget &root = CDialogBuilder::Create(name, required, m_window, m_manager);
        m_manager.AddNotifier(*this);
        return root;
    }

    static QStringList problems()
    {
        QStringList texts;
        for (const auto &problem : CPaintManagerUI::takeProblems()) {
            texts.append(problem.toString());
        }
        return texts;
    }

    test::Sandbox m_sandbox;
    QWidget m_window;
    CPaintManagerUI m_manager;
    QStringList m_events;
};

TEST_F(DialogBuilderTest, everyElementBecomesItsControl)
{
    const QWidget &root =
        build("<VerticalLayout name='v'><HorizontalLayout name='h'>"
              "<Button name='b'/><Option name='o'/><Option name='r' look='radio'/>"
              "<Text name='t'/><Label name='l'/><Edit name='e'/>"
              "<CheckBox name='c'/><Combo name='co'><Item text='one'/></Combo>"
              "<Progress name='p'/><WindowCtrl name='w'/><Control name='s'/>"
              "</HorizontalLayout><TabLayout name='tab'><Container name='page'/>"
              "</TabLayout></VerticalLayout>");
    EXPECT_EQ(problems(), QStringList());
    EXPECT_NE(root.findChild<QToolButton *>(u"b"_s), nullptr);
    EXPECT_TRUE(root.findChild<QToolButton *>(u"o"_s)->isCheckable());
    EXPECT_NE(root.findChild<QRadioButton *>(u"r"_s), nullptr);
    EXPECT_NE(root.findChild<CTextUI *>(u"t"_s), nullptr);
    EXPECT_NE(root.findChild<QLineEdit *>(u"e"_s), nullptr);
    EXPECT_NE(root.findChild<QCheckBox *>(u"c"_s), nullptr);
    EXPECT_EQ(root.findChild<QComboBox *>(u"co"_s)->itemText(0), u"one"_s);
    EXPECT_NE(root.findChild<CWindowCtrlUI *>(u"w"_s), nullptr);
    EXPECT_EQ(root.findChild<QStackedWidget *>(u"tab"_s)->count(), 1);
    EXPECT_EQ(CPaintManagerUI::GetClass(*m_manager.FindControl(u"o"_s)), u"OptionUI"_s);
}

TEST_F(DialogBuilderTest, theRootTellsTheWindowsMeasures)
{
    buildFile(u"Test.xml"_s, "<Window size='300,200' mininfo='100,90' maxinfo='500,400' "
                             "sizebox='1,2,3,4' caption='5,6,7,8' roundcorner='9,10'/>");
    EXPECT_EQ(m_manager.GetInitSize(), QSize(300, 200));
    EXPECT_EQ(m_manager.GetMinInfo(), QSize(100, 90));
    EXPECT_EQ(m_manager.GetMaxInfo(), QSize(500, 400));
    EXPECT_EQ(m_manager.GetSizeBox(), QMargins(1, 2, 3, 4));
    EXPECT_EQ(m_manager.GetCaptionRect(), QMargins(5, 6, 7, 8));
    EXPECT_EQ(m_manager.GetRoundCorner(), QSize(9, 10));
}

TEST_F(DialogBuilderTest, whatIsUnknownIsToldWithFileAndLineAndLeftOut)
{
    build("\n<Flower name='f'/>\n<Button name='b' smell='sweet'/>\n<Edit icon='none.png'/>"
          "\n<Button><Label/></Button>");
    EXPECT_THAT(problems(),
                testing::ElementsAre(u"Test.xml:2: unknown element Flower"_s,
                                     u"Test.xml:3: unknown attribute smell"_s,
                                     u"Test.xml:4: icon=\"none.png\" does not fit Edit"_s,
                                     u"Test.xml:5: Button holds no other elements"_s));
    EXPECT_NE(m_manager.FindControl(u"b"_s), nullptr);
}

TEST_F(DialogBuilderTest, absurdValuesAreToldAndIgnored)
{
    build("<Button width='-5'/><Button width='99999999999'/><Button width='x'/>"
          "<HorizontalLayout padding='1,2,3'/><Label align='up'/><CheckBox selected='1'/>");
    EXPECT_EQ(problems().size(), 6);
}

TEST_F(DialogBuilderTest, anImageOutsideTheSkinIsNotShown)
{
    m_sandbox.write(u"secret.svg"_s, "<svg/>");
    build("<Button name='b' icon='../secret.svg'/>");
    EXPECT_EQ(problems().size(), 1);
    EXPECT_TRUE(m_window.findChild<QToolButton *>(u"b"_s)->icon().isNull());
}

TEST_F(DialogBuilderTest, aBrokenFileIsReplacedByTheBuiltInOne)
{
    buildFile(u"DialogDeleteTask.xml"_s, "<Window><Button></Window>");
    EXPECT_NE(m_manager.FindControl(u"radioDelTaskAll"_s), nullptr);
    const QStringList told = problems();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.front().startsWith(u"DialogDeleteTask.xml:1: "_s));
}

TEST_F(DialogBuilderTest, aFileWithoutARequiredControlIsReplacedByTheBuiltInOne)
{
    constexpr std::array kRequired = {RequiredControl{"Button"_L1, "btnOK"_L1}};
    buildFile(u"DialogDeleteTask.xml"_s, "<Window><Label name='btnOK'/></Window>", kRequired);
    EXPECT_NE(m_window.findChild<QToolButton *>(u"btnOK"_s), nullptr);
    EXPECT_EQ(problems(), QStringList{u"DialogDeleteTask.xml: there is no Button named btnOK"_s});
}

TEST_F(DialogBuilderTest, aRequiredControlThatIsNotBuiltCountsAsMissing)
{
    constexpr std::array kRequired = {RequiredControl{"Button"_L1, "btnOK"_L1}};
    struct Case {
        QByteArray content;
        QStringList told;
    };
    const QString missing = u"DialogDeleteTask.xml: there is no Button named btnOK"_s;
    for (const auto &[content, told] :
         {Case{"<HorizontalLayuot><Button name='btnOK'/></HorizontalLayuot>",
               {u"DialogDeleteTask.xml:1: unknown element HorizontalLayuot"_s, missing}},
          Case{"<Label><Button name='btnOK'/></Label>",
               {u"DialogDeleteTask.xml:1: Label holds no other elements"_s, missing}},
          Case{"<Label name='btnOK'/><Button name='btnOK'/>", {missing}}}) {
        buildFile(u"DialogDeleteTask.xml"_s, "<Window>" + content + "</Window>", kRequired);
        EXPECT_NE(qobject_cast<QToolButton *>(m_manager.FindControl(u"btnOK"_s)), nullptr)
            << content.constData();
        EXPECT_NE(m_manager.FindControl(u"radioDelTaskAll"_s), nullptr) << content.constData();
        EXPECT_EQ(problems(), told) << content.constData();
    }
}

TEST_F(DialogBuilderTest, aLookThatMakesAnotherControlThanTheRequiredCountsAsMissing)
{
    constexpr std::array kButton = {RequiredControl{"Option"_L1, "pageGeneral"_L1}};
    buildFile(u"DialogSettings.xml"_s, "<Window><Option name='pageGeneral' look='radio'/></Window>",
              kButton);
    EXPECT_NE(qobject_cast<QToolButton *>(m_manager.FindControl(u"pageGeneral"_s)), nullptr);
    EXPECT_EQ(problems(),
              QStringList{u"DialogSettings.xml: there is no Option named pageGeneral"_s});

    constexpr std::array kAny = {RequiredControl{"Option"_L1, "pageGeneral"_L1, OptionLook::Any}};
    buildFile(u"DialogSettings.xml"_s, "<Window><Option name='pageGeneral' look='radio'/></Window>",
              kAny);
    EXPECT_NE(qobject_cast<QRadioButton *>(m_manager.FindControl(u"pageGeneral"_s)), nullptr);
    EXPECT_EQ(problems(), QStringList());
}

TEST_F(DialogBuilderTest, whatAPersonDoesIsNotified)
{
    build("<Button name='b'/><CheckBox name='c'/><Option name='o'/><Edit name='e'/>"
          "<Combo name='co'><Item text='1'/><Item text='2'/></Combo><Text name='t' "
          "text='{a}x{/a}'/>");
    m_window.show();
    m_events.clear();
    test::click(*m_window.findChild<QWidget *>(u"b"_s));
    m_window.findChild<QCheckBox *>(u"c"_s)->click();
    m_window.findChild<QToolButton *>(u"o"_s)->click();
    test::type(*m_window.findChild<QWidget *>(u"e"_s), u"x"_s);
    test::press(*m_window.findChild<QWidget *>(u"co"_s), Qt::Key_Down);
    Q_EMIT m_window.findChild<CTextUI *>(u"t"_s)->linkActivated(u"#"_s);
    EXPECT_THAT(m_events,
                testing::ElementsAre(u"click b"_s, u"selectchanged c"_s, u"click c"_s,
                                     u"selectchanged o"_s, u"click o"_s, u"textchanged e"_s,
                                     u"itemselect co"_s, u"link t"_s));
}

TEST_F(DialogBuilderTest, controlsAreFoundByPlace)
{
    build("<Button name='b' height='40'/><Control stretch='1'/>");
    m_window.resize(300, 200);
    m_window.show();
    EXPECT_EQ(m_manager.FindControl(QPoint(10, 10))->objectName(), u"b"_s);
    EXPECT_EQ(m_manager.FindControl(QPoint(1'000, 10)), nullptr);
}

TEST_F(DialogBuilderTest, aNativeChildTakesThePlaceOfItsHolder)
{
    build("<WindowCtrl name='w' stretch='1'/>");
    auto *first = new QWidget;
    auto *second = new QWidget;
    auto *host = qobject_cast<CWindowCtrlUI *>(m_manager.FindControl(u"w"_s));
    host->AttachHostWindow(*first);
    host->AttachHostWindow(*second);
    m_window.show();
    EXPECT_FALSE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(second->size(), host->size());
}

TEST_F(DialogBuilderTest, aNativeChildHasItsHoldersTurnOfTheKeyboard)
{
    build("<Button name='a'/><WindowCtrl name='w' stretch='1'/><Button name='z'/>");
    auto *hosted = new QLineEdit;
    auto *inside = new QLineEdit(hosted);
    qobject_cast<CWindowCtrlUI *>(m_manager.FindControl(u"w"_s))->AttachHostWindow(*hosted);
    m_window.show();
    m_window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    QWidget *first = m_manager.FindControl(u"a"_s);
    first->setFocus();
    std::vector<QWidget *> way;
    do {
        test::press(*QApplication::focusWidget(), Qt::Key_Tab);
        way.push_back(QApplication::focusWidget());
    } while (way.back() != first && way.size() < 10);
    EXPECT_THAT(way, testing::ElementsAre(hosted, inside, m_manager.FindControl(u"z"_s), first));
}

TEST_F(DialogBuilderTest, columnsOfAGridLineUp)
{
    build("<VerticalLayout columns='2'><Label name='a' text='a long label'/><Edit name='b'/>"
          "<Label name='c' text='x'/><Edit name='d'/><Control name='wide' span='2' "
          "height='3'/></VerticalLayout>");
    m_window.show();
    const auto left = [this](const QString &name) {
        return m_window.findChild<QWidget *>(name)->mapTo(&m_window, QPoint()).x();
    };
    EXPECT_EQ(left(u"b"_s), left(u"d"_s));
    EXPECT_EQ(left(u"a"_s), left(u"wide"_s));
}

TEST_F(DialogBuilderTest, aStyleSheetThatIsBrokenOrReachesOutsideIsReplaced)
{
    for (const char *sheet : {"QWidget { color: ", "QWidget { background: url(/etc/passwd); }",
                              "QWidget { image: url(skin:../../x.png) }",
                              "QWidget { image: URL( 'file:///x.png' ) }"}) {
        m_sandbox.write(u"skin/skin.qss"_s, sheet);
        CPaintManagerUI::SetInstance();
        const QString builtIn = qApp->styleSheet();
        CPaintManagerUI::SetResourcePath(m_sandbox.file(u"skin"_s));
        EXPECT_EQ(qApp->styleSheet(), builtIn) << sheet;
        EXPECT_EQ(problems().size(), 1) << sheet;
    }
}

TEST_F(DialogBuilderTest, textsShowMarksAndNothingElse)
{
    EXPECT_EQ(plainText(u"{b}old{/b} {a}here{/a}"_s), u"old here"_s);
    const QString rich = richText(u"<img src=x>{b}&{/b}"_s, Qt::red, false);
    EXPECT_EQ(rich, u"&lt;img src=x&gt;<b>&amp;</b>"_s);
}

} // namespace tollivar::DuiLib
