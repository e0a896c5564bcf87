// SPDX-License-Identifier: MIT
// qt-editor PIPE TITLE: a Qt text editor that reports what it holds, see report.py. It has a menu bar, which
// takes the focus when Alt is pressed and let go alone.
#include <QApplication>
#include <QFile>
#include <QFocusEvent>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QMenuBar>
#include <QTextEdit>

namespace {

class Editor : public QTextEdit {
public:
    explicit Editor(const QString& pipe)
        : m_pipe(pipe) {
        m_pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        setAcceptRichText(false);
        connect(this, &QTextEdit::textChanged, this, [this] { tell({{"text", toPlainText()}}); });
    }

protected:
    void focusInEvent(QFocusEvent* event) override {
        QTextEdit::focusInEvent(event);
        tell({{"ready", true}});
    }

private:
    void tell(const QJsonObject& what) {
        m_pipe.write(QJsonDocument(what).toJson(QJsonDocument::Compact) + '\n');
    }

    QFile m_pipe;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    auto* editor = new Editor(arguments.value(1));
    QMainWindow window;
    window.menuBar()->addMenu("&File")->addAction("&Close");
    window.menuBar()->addMenu("&Edit")->addAction("&Undo");
    window.setCentralWidget(editor);
    window.setWindowTitle(arguments.value(2));
    window.resize(500, 300);
    window.show();
    return QApplication::exec();
}
