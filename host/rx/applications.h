// The applications that are loaded: finding, loading, telling them the host's messages, unloading.
//
// The dynamic linker of the interface is a face of this. Used from one thread.
#pragma once

#include "base/result.h"
#include "rxdefs.h"
#include "sys/dynamic_library.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rx {

// One loaded application. Its address is the packet that its entry point is handed.
class application {
public:
    application(std::wstring name, sys::dynamic_library library, void* entry);

    // The name of its file, without folder.
    const std::wstring& name() const { return name_; }
    // The address of what it exports, null when there is no such thing.
    void* symbol(const char* name) const { return library_.symbol(name); }

    // Tells it a message; false when it answers with an error, or by an exception. Classes that it registers
    // meanwhile are its own.
    bool tell(AcRx::AppMsgCode message);

    bool locked = true;
    bool mdi_aware = false;

private:
    friend class applications;

    std::wstring name_;
    sys::dynamic_library library_;
    void* entry_;
    int telling_ = 0; // while its entry point runs it must stay
};

class applications {
public:
    // The one that the process has.
    static applications& instance();

    applications(const applications&) = delete;
    applications& operator=(const applications&) = delete;

    // Loads an application: the file as named, then beside the program; ".arx" is added to a name without an
    // ending. The failure tells in plain words why it did not come: not found, no application, loaded
    // already, refused.
    base::result<void> load(std::wstring_view path);
    // Unloads one, named by its file with or without folder and ending, case ignored. The failure tells why
    // it stays: not loaded, locked, busy with a message, refused. An application whose classes are still
    // registered leaves its code in memory.
    base::result<void> unload(std::wstring_view name);
    // The end: tells all of them kQuitMsg, then unloads them, the last one first. None can refuse.
    void unload_all();

    // Tells every application a message, in the order in which they came. One that answers with an error is
    // unloaded.
    void send(AcRx::AppMsgCode message);
    // Tells one of them. False when there is none of that name, and when it answers with an error and is
    // unloaded.
    bool send_to(std::wstring_view name, AcRx::AppMsgCode message);

    // File names without folder, in the order in which they came.
    std::vector<std::wstring> names() const;
    bool is_loaded(std::wstring_view name) const { return find(name) != nullptr; }
    // Whether the named application said that it can do with several documents.
    bool is_mdi_aware(std::wstring_view name) const;

    // The application of a name or of a packet; null when there is none.
    application* find(std::wstring_view name) const;
    application* of_packet(const void* packet) const;

    // Called with the name of an application that was initialised, so that it can be told of the documents
    // that are open, and of one that is about to go, so that it can be told that they go. One that then
    // refuses to go counts as newly initialised.
    std::function<void(const std::wstring& name)> on_loaded;
    std::function<void(const std::wstring& name)> on_unloading;

private:
    applications() = default;

    // Calls the hook; the application, null when that made it go.
    application* announce(const std::function<void(const std::wstring&)>& hook, const application& app);
    void drop(const application& app);

    std::vector<std::unique_ptr<application>> loaded_;
    std::vector<sys::dynamic_library> kept_; // of applications that went and left classes behind
};

} // namespace rx
