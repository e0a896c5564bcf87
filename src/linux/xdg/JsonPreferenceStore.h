// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"
#include "platform/system/Console.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PreferenceStore.h"

#include <nlohmann/json_fwd.hpp>

#include <memory>

namespace talvera {

/// Preferences in one JSON file, "preferences.json". It is read once; from then on it follows what is set
/// here: the changes of one turn of the main actor are written together, by the writer, whole or not at all.
///
/// What can't be read as our file is set aside under another name and never written over. While the disk
/// refuses to take the file, the preferences go on living in memory, and the next change tries again.
///
/// Data, whole numbers, other numbers and texts keep their types; a double has to be finite. What a newer
/// version has stored stays in the file, also in forms that this version does not know.
class JsonPreferenceStore final : public PreferenceStore {
public:
    /// Loads the file from `directory`, which is created when it is first needed. The writer finishes its
    /// jobs before the process ends.
    JsonPreferenceStore(const QString& directory, FileSystem& files, MainActor& actor, SerialQueue& writer,
                        Console& console);

    /// Hands what is still unwritten to the writer.
    ~JsonPreferenceStore() override;

    std::optional<PreferenceValue> object(const QString& key) const override;
    void set(const QString& key, const PreferenceValue& value) override;
    void remove(const QString& key) override;

private:
    class File;

    nlohmann::json& preferences() const;
    void changed();
    void write();

    MainActor& m_actor;
    SerialQueue& m_writer;
    std::shared_ptr<File> m_file; ///< the writer's, once it is loaded
    std::unique_ptr<nlohmann::json> m_document;
    bool m_isWritePending = false; ///< in a turn that is to come
    Lifetime m_lifetime;
};

} // namespace talvera
