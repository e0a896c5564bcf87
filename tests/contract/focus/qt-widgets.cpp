// SPDX-License-Identifier: MIT
// qt-widgets WIDGET: the same as gtk-widgets.py with Qt's widgets.
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSocketNotifier>
#include <QSpinBox>
#include <QTextEdit>
#include <QVBoxLayout>

#include <cstdio>
#include <iostream>
#include <map>
#include <string>

namespace {

class Canvas : public QWidget {
public:
    Canvas() { setFocusPolicy(Qt::StrongFocus); }
};

std::map<std::string, QWidget*> makeWidgets() {
    auto* readOnlyLine = new QLineEdit(QStringLiteral("fixed"));
    readOnlyLine->setReadOnly(true);
    auto* readOnlyText = new QTextEdit;
    readOnlyText->setReadOnly(true);
    auto* password = new QLineEdit;
    password->setEchoMode(QLineEdit::Password);
    auto* editableCombo = new QComboBox;
    editableCombo->setEditable(true);
    auto* combo = new QComboBox;
    combo->addItem(QStringLiteral("one"));
    combo->setFocusPolicy(Qt::StrongFocus);
    return {{"text-view", new QTextEdit},
            {"read-only-text-view", readOnlyText},
            {"entry", new QLineEdit},
            {"read-only-entry", readOnlyLine},
            {"password", password},
            {"spin-button", new QSpinBox},
            {"editable-combo", editableCombo},
            {"combo", combo},
            {"button", new QPushButton(QStringLiteral("Button"))},
            {"list", new QListWidget},
            {"canvas", new Canvas}};
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    const auto widgets = makeWidgets();
    QVBoxLayout layout(&window);
    for (const auto& [name, widget] : widgets)
        layout.addWidget(widget);
    QObject::connect(&application, &QApplication::focusChanged, [&](QWidget*, QWidget* now) {
        for (const auto& [name, widget] : widgets) {
            if (now && (widget == now || widget->isAncestorOf(now))) {
                std::printf("focused %s\n", name.c_str());
                std::fflush(stdout);
            }
        }
    });
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, [](Qt::ApplicationState state) {
        std::printf("window %s\n", state == Qt::ApplicationActive ? "active" : "inactive");
        std::fflush(stdout);
    });
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string command;
        std::string name;
        if (!(std::cin >> command))
            QApplication::quit();
        else if (command == "focus" && std::cin >> name)
            widgets.at(name)->setFocus();
    });
    widgets.at(application.arguments().value(1).toStdString())->setFocus();
    window.show();
    return QApplication::exec();
}
