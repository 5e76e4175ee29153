// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Another program on the desktop, as far as ours has to do with one:
//
//   veltro-other-program drag X Y TYPE=FILE…    what is dragged from its window has this content
//   veltro-other-program drop X Y               says what is dropped on its window
//   veltro-other-program copy BYTES             holds a text of that many bytes in the clipboard
//
// Its window is 150 by 150 and stands at X Y. It says "ready", and then what happens to it, a line
// each, until its end.
#include <QClipboard>
#include <QDrag>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include <cstdio>

namespace {

void say(const QByteArray &line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

class OtherWindow : public QRasterWindow {
public:
    explicit OtherWindow(QStringList offered) : m_offered(std::move(offered))
    {
        setFlags(Qt::X11BypassWindowManagerHint | Qt::FramelessWindowHint);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), Qt::darkGray);
        if (!m_isReady) {
            m_isReady = true;
            say("ready");
        }
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!event->buttons().testFlag(Qt::LeftButton) || m_offered.isEmpty() || m_isDragging) {
            return;
        }
        m_isDragging = true;
        auto *content = new QMimeData;
        for (const QString &one : std::as_const(m_offered)) {
            const qsizetype equals = one.indexOf(u'=');
            QFile file(one.mid(equals + 1));
            if (file.open(QIODevice::ReadOnly)) {
                content->setData(one.left(equals), file.readAll());
            }
        }
        auto *drag = new QDrag(this);
        drag->setMimeData(content);
        say("dragging");
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
        say(action == Qt::IgnoreAction ? "refused" : "taken");
        m_isDragging = false;
    }

    bool event(QEvent *event) override
    {
        if (!m_offered.isEmpty()) {
            return QRasterWindow::event(event); // takes nothing, above all not its own
        }
        switch (event->type()) {
        case QEvent::DragEnter:
            say("entered");
            [[fallthrough]];
        case QEvent::DragMove:
            static_cast<QDragMoveEvent *>(event)->acceptProposedAction();
            return true;
        case QEvent::Drop: {
            auto *drop = static_cast<QDropEvent *>(event);
            say("dropped " + drop->mimeData()->data(QStringLiteral("text/uri-list")).toHex());
            drop->acceptProposedAction();
            return true;
        }
        default:
            return QRasterWindow::event(event);
        }
    }

private:
    const QStringList m_offered;
    bool m_isReady = false;
    bool m_isDragging = false;
};

}

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList words = QGuiApplication::arguments();
    const QString what = words.value(1);
    if (what == u"copy") {
        QGuiApplication::clipboard()->setText(QString(words.value(2).toLongLong(), u'x'));
        say("ready");
        return QGuiApplication::exec();
    }
    OtherWindow window(what == u"drag" ? words.mid(4) : QStringList());
    window.setGeometry(words.value(2).toInt(), words.value(3).toInt(), 150, 150);
    window.show();
    return QGuiApplication::exec();
}
