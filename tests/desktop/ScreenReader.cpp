// SPDX-License-Identifier: MIT
#include "ScreenReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <algorithm>
#include <stdexcept>

namespace talvera::test::ScreenReader {

namespace {

Element elementFrom(const QJsonObject& told) {
    const auto place = told["place"].toArray();
    QStringList states;
    for (const auto& state : told["states"].toArray())
        states.append(state.toString());
    return {told["role"].toString(), told["name"].toString(), told["description"].toString(), states,
            QRect(place[0].toInt(), place[1].toInt(), place[2].toInt(), place[3].toInt())};
}

/// The reader's process, which stays from the first look to the end of the program.
class Reader {
public:
    Reader() { m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel); }

    ~Reader() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// A line for each object.
    QList<QByteArray> look(pid_t program) {
        if (m_process.state() == QProcess::NotRunning)
            m_process.start(TALVERA_SCREEN_READER, QStringList());
        m_process.write(QByteArray::number(program) + '\n');
        QList<QByteArray> lines;
        while (true) {
            while (!m_process.canReadLine()) {
                if (m_process.waitForReadyRead(60000))
                    continue;
                m_process.kill(); // what it says late is no answer to the next look
                m_process.waitForFinished();
                throw std::runtime_error("the screen reader says nothing");
            }
            lines.append(m_process.readLine().chopped(1));
            if (lines.last().isEmpty())
                return lines;
        }
    }

private:
    QProcess m_process;
};

} // namespace

std::vector<Element> read(pid_t program) {
    static Reader reader;
    std::vector<Element> elements;
    for (const auto& line : reader.look(program)) {
        auto element = elementFrom(QJsonDocument::fromJson(line).object());
        if (element.is("showing"))
            elements.push_back(std::move(element));
    }
    return elements;
}

std::optional<Element> find(pid_t program, const QString& role, const QString& name) {
    const auto elements = read(program);
    const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& element) {
        return (role.isEmpty() || element.role == role) && element.name == name;
    });
    return found == elements.end() ? std::nullopt : std::optional(*found);
}

} // namespace talvera::test::ScreenReader
