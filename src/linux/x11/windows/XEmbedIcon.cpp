// SPDX-License-Identifier: MIT
#include "linux/x11/windows/XEmbedIcon.h"

#include "linux/support/applicationId.h"
#include "linux/support/logicalRect.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/eventType.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

namespace talvera {

namespace {

constexpr std::uint16_t firstSize = 24; ///< until the tray has given us ours
/// In pixels. What a tray has room for beyond that stays empty: a picture of ten thousand pixels' edge would
/// take 400 MB, and more than a request to the server may have.
constexpr int greatestEdge = 256;
constexpr std::uint32_t embedVersion = 0; ///< of the XEmbed protocol
constexpr std::uint32_t embedMapped = 1;
constexpr std::uint32_t dockRequest = 0;
constexpr std::uint8_t translucentDepth = 32;

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

bool isTrueColor(const xcb_screen_t& screen, std::uint8_t depth, xcb_visualid_t visual) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
        if (depths.data->depth != depth)
            continue;
        for (auto types = xcb_depth_visuals_iterator(depths.data); types.rem; xcb_visualtype_next(&types)) {
            if (types.data->visual_id == visual)
                return types.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR && types.data->red_mask == 0xff0000;
        }
    }
    return false;
}

/// The depth of a visual; 0 when there is no such one.
std::uint8_t depthOf(const xcb_screen_t& screen, xcb_visualid_t visual) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
        if (isTrueColor(screen, depths.data->depth, visual))
            return depths.data->depth;
    }
    return 0;
}

/// How light a picture is on the whole, from 0 to 1, as the eye sees it.
double lightness(const QImage& image) {
    const auto mean = QColor(image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0));
    return 0.299 * mean.redF() + 0.587 * mean.greenF() + 0.114 * mean.blueF();
}

QColor readableOn(double lightness) {
    return lightness < 0.5 ? TrayColors::onDark : TrayColors::onLight;
}

} // namespace

XEmbedIcon::XEmbedIcon(const X11Server& server, SymbolPainter painter)
    : m_painter(std::move(painter))
    , m_x11(server.connect())
    , m_pump(*m_x11, [this](const xcb_generic_event_t& event) { handle(event); }) {
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // trays announce themselves to the root
    xcb_change_window_attributes(m_x11->get(), m_x11->root(), XCB_CW_EVENT_MASK, &events);
    findTray();
}

XEmbedIcon::~XEmbedIcon() {
    undock();
}

void XEmbedIcon::setSymbol(const QString& name) {
    if (name == std::exchange(m_symbol, name))
        return;
    draw();
}

void XEmbedIcon::setTitle(const QString& text) {
    m_title = text;
    if (m_window == XCB_WINDOW_NONE)
        return;
    const auto utf8 = text.toUtf8();
    for (const auto* property : {"_NET_WM_NAME", "WM_NAME"})
        xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, m_window, m_x11->atom(property),
                            m_x11->atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(utf8.size()),
                            utf8.constData());
    m_x11->flush();
}

void XEmbedIcon::setShown(bool shown) {
    m_shown = shown;
    if (!shown)
        undock();
    else if (hasTray() && m_window == XCB_WINDOW_NONE)
        dock();
}

std::optional<QRect> XEmbedIcon::frame() {
    if (m_window == XCB_WINDOW_NONE)
        return std::nullopt;
    const auto geometryQuestion = xcb_get_geometry(m_x11->get(), m_window);
    const auto placeQuestion = xcb_translate_coordinates(m_x11->get(), m_window, m_x11->root(), 0, 0);
    const auto attributesQuestion = xcb_get_window_attributes(m_x11->get(), m_window);
    const auto geometry = m_x11->reply<xcb_get_geometry_reply_t>(geometryQuestion);
    const auto place = m_x11->reply<xcb_translate_coordinates_reply_t>(placeQuestion);
    const auto attributes = m_x11->reply<xcb_get_window_attributes_reply_t>(attributesQuestion);
    if (!geometry || !place || !attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
        return std::nullopt;
    return logicalRect(QRect(place->dst_x, place->dst_y, geometry->width, geometry->height));
}

void XEmbedIcon::handle(const xcb_generic_event_t& event) {
    switch (eventType(event)) {
    case XCB_CLIENT_MESSAGE:
        if (as<xcb_client_message_event_t>(event).type == m_x11->atom("MANAGER"))
            findTray();
        break;
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).window == m_tray)
            findTray();
        break;
    case XCB_REPARENT_NOTIFY:
        // A tray that ends hands its icons back to the root window, where they would lie about.
        if (const auto& moved = as<xcb_reparent_notify_event_t>(event);
            moved.window == m_window && moved.parent == m_x11->root())
            undock();
        break;
    case XCB_PROPERTY_NOTIFY:
        if (as<xcb_property_notify_event_t>(event).window == m_tray) {
            readColors();
            draw();
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (const auto& configured = as<xcb_configure_notify_event_t>(event); configured.window == m_window) {
            m_size = QSize(configured.width, configured.height);
            if (m_size.width() != m_size.height())
                askForSquare(std::max(m_size.width(), m_size.height()));
            draw();
        }
        break;
    case XCB_EXPOSE:
        if (as<xcb_expose_event_t>(event).window == m_window && as<xcb_expose_event_t>(event).count == 0)
            draw();
        break;
    case XCB_BUTTON_PRESS:
        if (as<xcb_button_press_event_t>(event).event == m_window &&
            as<xcb_button_press_event_t>(event).detail <= XCB_BUTTON_INDEX_3 && onClick)
            onClick();
        break;
    default:
        break;
    }
}

void XEmbedIcon::findTray() {
    undock();
    const auto selection = m_x11->atom("_NET_SYSTEM_TRAY_S0");
    // No tray may end between the answer and our asking to be told of its end.
    xcb_grab_server(m_x11->get());
    m_tray = m_x11->selectionOwner(selection);
    if (hasTray()) {
        const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_x11->get(), m_tray, XCB_CW_EVENT_MASK, &events);
    }
    xcb_ungrab_server(m_x11->get());
    m_x11->flush();
    readColors();
    if (hasTray() && m_shown)
        dock();
}

/// Three numbers of 16 bits are the colour that symbols should have.
void XEmbedIcon::readColors() {
    m_foreground.reset();
    if (!hasTray())
        return;
    const auto colors = m_x11->property(m_tray, m_x11->atom("_NET_SYSTEM_TRAY_COLORS"));
    if (colors.size() >= 3)
        m_foreground =
            QColor(static_cast<int>(colors[0] >> 8U & 0xffU), static_cast<int>(colors[1] >> 8U & 0xffU),
                   static_cast<int>(colors[2] >> 8U & 0xffU));
}

/// A tray that says how its icons are to be made up lays translucent ones over itself; in any other one we
/// draw over the background that we find.
XEmbedIcon::Look XEmbedIcon::lookForTray() {
    const auto wanted = m_x11->property(m_tray, m_x11->atom("_NET_SYSTEM_TRAY_VISUAL"));
    if (!wanted.empty()) {
        if (const auto depth = depthOf(m_x11->screen(), wanted.front()); depth != 0)
            return {depth, wanted.front(), depth == translucentDepth};
    }
    return {m_x11->screen().root_depth, m_x11->screen().root_visual, false};
}

void XEmbedIcon::dock() {
    createWindow();
    describeWindow();
    askToBeTakenIn();
}

void XEmbedIcon::createWindow() {
    auto* const x11 = m_x11->get();
    m_look = lookForTray();
    m_window = xcb_generate_id(x11);
    m_colormap = xcb_generate_id(x11);
    m_gc = xcb_generate_id(x11);
    m_size = QSize(firstSize, firstSize);
    xcb_create_colormap(x11, XCB_COLORMAP_ALLOC_NONE, m_colormap, m_x11->root(), m_look.visual);
    const std::array<std::uint32_t, 4> values{
        0, 0, XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_BUTTON_PRESS,
        m_colormap};
    xcb_create_window(x11, m_look.depth, m_window, m_x11->root(), 0, 0, firstSize, firstSize, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, m_look.visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values.data());
    if (!m_look.translucent) {
        // Refused where the tray has another depth; then the background stays black.
        const std::uint32_t parentsBackground = XCB_BACK_PIXMAP_PARENT_RELATIVE;
        xcb_change_window_attributes(x11, m_window, XCB_CW_BACK_PIXMAP, &parentsBackground);
    }
    xcb_create_gc(x11, m_gc, m_window, 0, nullptr);
}

void XEmbedIcon::describeWindow() {
    auto* const x11 = m_x11->get();
    const std::string name = applicationId;
    const auto classes = name + '\0' + name + '\0';
    xcb_change_property(x11, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(classes.size()), classes.data());
    const std::array<std::uint32_t, 2> embedding{embedVersion, embedMapped};
    xcb_change_property(x11, XCB_PROP_MODE_REPLACE, m_window, m_x11->atom("_XEMBED_INFO"),
                        m_x11->atom("_XEMBED_INFO"), 32, embedding.size(), embedding.data());
    setTitle(m_title);
    askForSquare(firstSize);
}

void XEmbedIcon::askToBeTakenIn() {
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = m_tray;
    request.type = m_x11->atom("_NET_SYSTEM_TRAY_OPCODE");
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = dockRequest;
    request.data.data32[2] = m_window;
    xcb_send_event(m_x11->get(), 0, m_tray, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&request));
    m_x11->flush();
}

/// Trays give as much room across their length as they have, and along it as much as is asked for.
void XEmbedIcon::askForSquare(int edge) {
    edge = std::min(edge, greatestEdge);
    if (edge == std::exchange(m_askedEdge, edge))
        return;
    struct {
        std::uint32_t flags = 1U << 4U; // there is a least size
        std::array<std::uint32_t, 4> unused{};
        std::array<std::uint32_t, 2> least{};
        std::array<std::uint32_t, 11> others{};
    } hints;
    hints.least.fill(static_cast<std::uint32_t>(edge));
    xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, sizeof(hints) / sizeof(hints.flags), &hints);
    m_x11->flush();
}

void XEmbedIcon::undock() {
    if (m_window == XCB_WINDOW_NONE)
        return;
    m_askedEdge = 0;
    xcb_free_gc(m_x11->get(), m_gc);
    xcb_destroy_window(m_x11->get(), std::exchange(m_window, XCB_WINDOW_NONE));
    xcb_free_colormap(m_x11->get(), m_colormap);
    m_x11->flush();
}

void XEmbedIcon::draw() {
    if (m_window == XCB_WINDOW_NONE || m_symbol.isEmpty() || m_size.isEmpty())
        return;
    xcb_clear_area(m_x11->get(), 0, m_window, 0, 0, 0, 0);
    const QSize size = m_size.boundedTo({greatestEdge, greatestEdge});
    const QRect place({(m_size.width() - size.width()) / 2, (m_size.height() - size.height()) / 2}, size);
    const auto below = m_look.translucent ? std::nullopt : background(place);
    if (!m_look.translucent && !below)
        return; // not on the screen now: an Expose event comes when it is
    const auto square = crispSize(std::min(size.width(), size.height()));
    const auto symbol = m_painter(m_symbol, colorOn(below), square);
    QImage picture = below.value_or(QImage(size, QImage::Format_ARGB32_Premultiplied));
    if (!below)
        picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.drawImage((size.width() - square) / 2, (size.height() - square) / 2, symbol);
    painter.end();
    xcb_put_image(m_x11->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_gc,
                  static_cast<std::uint16_t>(size.width()), static_cast<std::uint16_t>(size.height()),
                  static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0, m_look.depth,
                  static_cast<std::uint32_t>(picture.sizeInBytes()), picture.constBits());
    m_x11->flush();
}

/// What the tray shows behind us there.
std::optional<QImage> XEmbedIcon::background(const QRect& place) {
    const auto answer = m_x11->reply<xcb_get_image_reply_t>(
        xcb_get_image(m_x11->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, static_cast<std::int16_t>(place.x()),
                      static_cast<std::int16_t>(place.y()), static_cast<std::uint16_t>(place.width()),
                      static_cast<std::uint16_t>(place.height()), ~0U));
    QImage image(place.size(), QImage::Format_RGB32);
    if (!answer || xcb_get_image_data_length(answer.get()) != image.sizeInBytes())
        return std::nullopt;
    std::memcpy(image.bits(), xcb_get_image_data(answer.get()),
                static_cast<std::size_t>(image.sizeInBytes()));
    return image;
}

QColor XEmbedIcon::colorOn(const std::optional<QImage>& background) const {
    if (background)
        return readableOn(lightness(*background));
    return m_foreground.value_or(TrayColors::onUnknown);
}

} // namespace talvera
