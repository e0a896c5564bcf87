// SPDX-License-Identifier: MIT
#include "linux/wayland/clipboard/DataControl.h"

#include "linux/wayland/client/WaylandConnection.h"

#include <array>
#include <cstddef>
#include <utility>

#include <data-control-ext-client-protocol.h>
#include <data-control-wlr-client-protocol.h>
#include <wayland-client.h>

namespace talvera {

namespace {

/// The older form, and the only one that the compositors of these days have.
struct Wlr {
    using Manager = zwlr_data_control_manager_v1;
    using Device = zwlr_data_control_device_v1;
    using DeviceListener = zwlr_data_control_device_v1_listener;
    using Source = zwlr_data_control_source_v1;
    using SourceListener = zwlr_data_control_source_v1_listener;
    using Offer = zwlr_data_control_offer_v1;

    static constexpr const wl_interface* interface = &zwlr_data_control_manager_v1_interface;
    static constexpr std::uint32_t newestVersion = 2;
    static constexpr std::uint32_t firstWithPrimary = 2;

    static constexpr auto device = &zwlr_data_control_manager_v1_get_data_device;
    static constexpr auto createSource = &zwlr_data_control_manager_v1_create_data_source;
    static constexpr auto destroyManager = &zwlr_data_control_manager_v1_destroy;
    static constexpr auto listenToDevice = &zwlr_data_control_device_v1_add_listener;
    static constexpr auto version = &zwlr_data_control_device_v1_get_version;
    static constexpr auto setClipboard = &zwlr_data_control_device_v1_set_selection;
    static constexpr auto setPrimary = &zwlr_data_control_device_v1_set_primary_selection;
    static constexpr auto destroyDevice = &zwlr_data_control_device_v1_destroy;
    static constexpr auto offerFormat = &zwlr_data_control_source_v1_offer;
    static constexpr auto listenToSource = &zwlr_data_control_source_v1_add_listener;
    static constexpr auto destroySource = &zwlr_data_control_source_v1_destroy;
    static constexpr auto destroyOffer = &zwlr_data_control_offer_v1_destroy;
};

/// The form that is to replace it, alike but for its names.
struct Ext {
    using Manager = ext_data_control_manager_v1;
    using Device = ext_data_control_device_v1;
    using DeviceListener = ext_data_control_device_v1_listener;
    using Source = ext_data_control_source_v1;
    using SourceListener = ext_data_control_source_v1_listener;
    using Offer = ext_data_control_offer_v1;

    static constexpr const wl_interface* interface = &ext_data_control_manager_v1_interface;
    static constexpr std::uint32_t newestVersion = 1;
    static constexpr std::uint32_t firstWithPrimary = 1;

    static constexpr auto device = &ext_data_control_manager_v1_get_data_device;
    static constexpr auto createSource = &ext_data_control_manager_v1_create_data_source;
    static constexpr auto destroyManager = &ext_data_control_manager_v1_destroy;
    static constexpr auto listenToDevice = &ext_data_control_device_v1_add_listener;
    static constexpr auto version = &ext_data_control_device_v1_get_version;
    static constexpr auto setClipboard = &ext_data_control_device_v1_set_selection;
    static constexpr auto setPrimary = &ext_data_control_device_v1_set_primary_selection;
    static constexpr auto destroyDevice = &ext_data_control_device_v1_destroy;
    static constexpr auto offerFormat = &ext_data_control_source_v1_offer;
    static constexpr auto listenToSource = &ext_data_control_source_v1_add_listener;
    static constexpr auto destroySource = &ext_data_control_source_v1_destroy;
    static constexpr auto destroyOffer = &ext_data_control_offer_v1_destroy;
};

std::size_t indexOf(DataControl::Selection selection) {
    return static_cast<std::size_t>(selection);
}

template <typename Protocol>
class DataControlBy final : public DataControl {
    using Device = typename Protocol::Device;
    using Source = typename Protocol::Source;
    using Offer = typename Protocol::Offer;

public:
    DataControlBy(typename Protocol::Manager* manager, wl_seat* seat, Owner& owner)
        : m_owner(owner)
        , m_manager(manager)
        , m_device(Protocol::device(manager, seat)) {
        Protocol::listenToDevice(m_device, &ofDevice, this);
    }
    ~DataControlBy() override {
        for (Held& held : m_held)
            drop(held);
        Protocol::destroyDevice(m_device);
        Protocol::destroyManager(m_manager);
    }

    void take(Selection selection, const std::vector<std::string>& formats) override {
        if (!has(selection))
            return;
        Held& held = m_held[indexOf(selection)];
        auto* source = Protocol::createSource(m_manager);
        Protocol::listenToSource(source, &ofSource, this);
        for (const auto& format : formats)
            Protocol::offerFormat(source, format.c_str());
        if (selection == Selection::Clipboard)
            Protocol::setClipboard(m_device, source);
        else
            Protocol::setPrimary(m_device, source);
        drop(held);
        held.source = source;
    }

    bool isOurs(Selection selection) const override { return m_held[indexOf(selection)].source != nullptr; }
    bool isForeign(Selection selection) const override {
        return m_held[indexOf(selection)].isOffered && !isOurs(selection);
    }
    bool has(Selection selection) const override {
        return !m_isFinished && (selection == Selection::Clipboard ||
                                 Protocol::version(m_device) >= Protocol::firstWithPrimary);
    }
    bool isFinished() const override { return m_isFinished; }

private:
    struct Held {
        Source* source = nullptr; ///< ours, as long as it is the one that counts
        bool isOffered = false;   ///< by whomever
    };

    static DataControlBy& self(void* data) { return *static_cast<DataControlBy*>(data); }

    static void drop(Held& held) {
        if (auto* source = std::exchange(held.source, nullptr))
            Protocol::destroySource(source);
    }

    void onOffer(Selection selection, Offer* offer) {
        m_held[indexOf(selection)].isOffered = offer != nullptr;
        if (offer != nullptr)
            Protocol::destroyOffer(offer);
    }

    void onCancelled(Source* source) {
        for (const auto selection : {Selection::Clipboard, Selection::Primary}) {
            Held& held = m_held[indexOf(selection)];
            if (held.source != source)
                continue;
            drop(held);
            m_owner.onLost(selection);
        }
    }

    static constexpr typename Protocol::DeviceListener ofDevice{
        .data_offer = [](void*, Device*, Offer*) {},
        .selection = [](void* data, Device*,
                        Offer* offer) { self(data).onOffer(Selection::Clipboard, offer); },
        .finished = [](void* data, Device*) { self(data).m_isFinished = true; },
        .primary_selection = [](void* data, Device*,
                                Offer* offer) { self(data).onOffer(Selection::Primary, offer); }};

    static constexpr typename Protocol::SourceListener ofSource{
        .send = [](void* data, Source*, const char* format,
                   int pipe) { self(data).m_owner.onRequest(format, FileDescriptor(pipe)); },
        .cancelled = [](void* data, Source* source) { self(data).onCancelled(source); }};

    Owner& m_owner;
    typename Protocol::Manager* const m_manager;
    Device* const m_device;
    std::array<Held, 2> m_held;
    bool m_isFinished = false;
};

template <typename Protocol>
std::unique_ptr<DataControl> openBy(WaylandConnection& connection, DataControl::Owner& owner) {
    auto* manager =
        connection.bind<typename Protocol::Manager>(*Protocol::interface, Protocol::newestVersion);
    if (manager == nullptr)
        return nullptr;
    return std::make_unique<DataControlBy<Protocol>>(manager, connection.seat(), owner);
}

} // namespace

std::unique_ptr<DataControl> DataControl::open(WaylandConnection& connection, Owner& owner) {
    if (connection.seat() == nullptr)
        return nullptr;
    auto opened = openBy<Ext>(connection, owner);
    return opened ? std::move(opened) : openBy<Wlr>(connection, owner);
}

bool DataControl::isOffered(const WaylandConnection& connection) {
    return connection.seat() != nullptr &&
           (connection.offers(*Ext::interface) || connection.offers(*Wlr::interface));
}

} // namespace talvera
