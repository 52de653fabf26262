// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

// Every function of GIO, GObject and GLib that this folder calls.
#define PW_GIO_FUNCTIONS(X)                                                                                  \
    X(g_app_info_get_default_for_type)                                                                       \
    X(g_app_info_get_default_for_uri_scheme)                                                                 \
    X(g_app_info_get_id)                                                                                     \
    X(g_app_launch_context_get_environment)                                                                  \
    X(g_app_launch_context_get_type)                                                                         \
    X(g_app_launch_context_setenv)                                                                           \
    X(g_app_launch_context_unsetenv)                                                                         \
    X(g_desktop_app_info_get_string)                                                                         \
    X(g_desktop_app_info_launch_uris_as_manager_with_fds)                                                    \
    X(g_desktop_app_info_new_from_filename)                                                                  \
    X(g_error_free)                                                                                          \
    X(g_file_get_uri)                                                                                        \
    X(g_file_info_get_content_type)                                                                          \
    X(g_file_new_for_path)                                                                                   \
    X(g_file_query_info)                                                                                     \
    X(g_file_trash)                                                                                          \
    X(g_free)                                                                                                \
    X(g_list_append)                                                                                         \
    X(g_list_free)                                                                                           \
    X(g_object_new_with_properties)                                                                          \
    X(g_object_unref)                                                                                        \
    X(g_spawn_async_with_pipes_and_fds)                                                                      \
    X(g_strdup)                                                                                              \
    X(g_strfreev)                                                                                            \
    X(g_type_register_static_simple)

namespace platform {

/// The functions by their own names: `gio()->g_free(text)`.
struct Gio
{
#define PW_MEMBER(name) decltype(&::name) name;
    PW_GIO_FUNCTIONS(PW_MEMBER)
#undef PW_MEMBER
};

/// The library, opened at the first call: a start of the program that opens nothing does not pay for it. Null
/// when it is not installed or too old. The first call comes from the interface thread, later ones from any.
const Gio *gio();

struct GioRelease
{
    void operator()(void *object) const { gio()->g_object_unref(object); }
    void operator()(char *text) const { gio()->g_free(text); }
    void operator()(char **texts) const { gio()->g_strfreev(texts); }
    void operator()(GError *error) const { gio()->g_error_free(error); }
    void operator()(GList *list) const { gio()->g_list_free(list); }
};

/// Owns what a GIO function gave away.
template <typename T> using GioPointer = std::unique_ptr<T, GioRelease>;

} // namespace platform
