// SPDX-License-Identifier: Apache-2.0
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <memory>
#include <utility>

namespace {

/// Says how far it is to the test that started this program.
void tell(const char *what)
{
    std::puts(what);
    std::fflush(stdout);
}

/// A window out of which files are dragged, wherever the mouse is pressed.
class Window final : public QWidget
{
public:
    explicit Window(const QStringList &files)
    {
        for (const QString &file : files)
            _files.append(QUrl::fromLocalFile(file));
    }

private:
    void mousePressEvent(QMouseEvent * /*event*/) override
    {
        auto content = std::make_unique<QMimeData>();
        content->setUrls(_files);
        auto *drag = new QDrag(this);
        drag->setMimeData(content.release()); // the drag's
        QTimer::singleShot(0, this, [] { tell("dragging"); });
        tell(drag->exec(Qt::CopyAction) == Qt::CopyAction ? "taken" : "refused");
    }
    void paintEvent(QPaintEvent * /*event*/) override
    {
        if (!std::exchange(_isSeen, true))
            tell("ready");
    }

    QList<QUrl> _files;
    bool _isSeen = false;
};

} // namespace

/// What tests drag files from: a program beside theirs, with a window at the place of the first two arguments.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    Window window(arguments.mid(3));
    window.setGeometry(arguments.value(1).toInt(), arguments.value(2).toInt(), 150, 150);
    window.show();
    return application.exec();
}
