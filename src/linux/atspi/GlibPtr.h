// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <memory>

namespace talvera {

struct GlibUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GDBusConnection* connection) const { g_object_unref(connection); }
    void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
};

/// A reference to one of GLib's objects.
template <typename T>
using GlibPtr = std::unique_ptr<T, GlibUnref>;

/// Makes a context the one that asynchronous calls of this thread answer to, for as long as this lives.
class WithThreadDefaultContext {
public:
    explicit WithThreadDefaultContext(GMainContext* context)
        : m_context(context) {
        g_main_context_push_thread_default(m_context);
    }
    ~WithThreadDefaultContext() { g_main_context_pop_thread_default(m_context); }
    WithThreadDefaultContext(const WithThreadDefaultContext&) = delete;
    WithThreadDefaultContext& operator=(const WithThreadDefaultContext&) = delete;

private:
    GMainContext* m_context;
};

} // namespace talvera
