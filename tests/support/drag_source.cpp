// A program beside ours, to drag from. A press on its window, "Drag source", takes up a text, or a
// file where the first argument says so, and says "welcome" whenever what is under the pointer
// would take it, at the end "taken" or "refused".
// usage: drag_source text|file CONTENT

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <memory>

namespace {

class Source : public QWidget {
public:
    Source(QString kind, QString content) : m_kind(std::move(kind)), m_content(std::move(content))
    {
        setWindowTitle(QStringLiteral("Drag source"));
        resize(100, 60);
    }

protected:
    void mousePressEvent(QMouseEvent * /*event*/) override
    {
        auto dragged = std::make_unique<QMimeData>();
        if (m_kind == u"file") {
            dragged->setUrls({QUrl::fromLocalFile(m_content)});
        } else {
            dragged->setText(m_content);
        }
        // Qt deletes it when the drag is over.
        auto *drag = new QDrag(this);
        drag->setMimeData(dragged.release());
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action == Qt::CopyAction) {
                say("welcome");
            }
        });
        say(drag->exec(Qt::CopyAction) == Qt::CopyAction ? "taken" : "refused");
    }

private:
    static void say(const char *word)
    {
        std::printf("%s\n", word);
        std::fflush(stdout);
    }

    QString m_kind;
    QString m_content;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    Source source(arguments.value(1), arguments.value(2));
    source.show();
    return QApplication::exec();
}
