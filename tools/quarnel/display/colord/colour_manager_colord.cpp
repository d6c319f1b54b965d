// SPDX-License-Identifier: MIT
// The colour daemon reached through libcolord, colord's own client library,
// with its blocking calls: the tool does one thing and exits.

#include <colord.h>

#include <filesystem>
#include <memory>

#include "display/colord/colour_manager.h"
#include "display/colord/drm_edid.h"
#include "display/colord/icc_folder.h"
#include "display/gamma_backend.h"
#include "io/atomic_file.h"
#include "io/tool_error.h"

namespace quarnel::tool::colord {
namespace {

struct ObjectUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using Ref = std::unique_ptr<T, ObjectUnref>;

struct ArrayUnref {
    void operator()(GPtrArray* array) const { g_ptr_array_unref(array); }
};
using Array = std::unique_ptr<GPtrArray, ArrayUnref>;

// Collects a GError and turns it into the tool's one-line failure.
class Error {
public:
    ~Error() { g_clear_error(&error_); }
    GError** out() { return &error_; }
    [[noreturn]] void Fail(int code, const std::string& what) {
        throw ToolError(code, what + (error_ != nullptr ? std::string(": ") + error_->message : ""));
    }

private:
    GError* error_ = nullptr;
};

// The connection to colord; the daemon is not started on demand.
Ref<CdClient> Connect() {
    Ref<CdClient> client(cd_client_new());
    Error error;
    if (!cd_client_connect_sync(client.get(), nullptr, error.out()))
        error.Fail(kExitUnavailable, "cannot reach colord");
    if (!cd_client_get_has_server(client.get()))
        throw ToolError(kExitUnavailable, "cannot reach colord: it is not running");
    return client;
}

Ref<CdDevice> FindDevice(CdClient* client, const std::string& id) {
    Error error;
    Ref<CdDevice> device(cd_client_find_device_sync(client, id.c_str(), nullptr, error.out()));
    if (!device) error.Fail(kExitUnavailable, "colord has no device " + id);
    if (!cd_device_connect_sync(device.get(), nullptr, error.out()))
        error.Fail(kExitUnavailable, "cannot read colord device " + id);
    return device;
}

std::string Filename(CdProfile* profile) {
    Error error;
    if (!cd_profile_connect_sync(profile, nullptr, error.out())) return "";
    const char* file = cd_profile_get_filename(profile);
    return file != nullptr ? file : "";
}

std::string Text(const char* text) { return text != nullptr ? text : ""; }

// What a display is known by outside colord: its connector and, where the
// kernel shows it, what its EDID says.
struct SoughtDisplay {
    std::string connector;  // empty: whichever output is the built-in panel
    bool builtIn = false;
    std::string vendor, model, serial, edidMd5;
    std::string guessedId;  // xrandr-VENDOR-MODEL-SERIAL, as GNOME names the device
};

SoughtDisplay FromEdid(const OutputEdid& output, bool builtIn) {
    Ref<CdEdid> edid(cd_edid_new());
    Ref<GBytes> bytes(g_bytes_new(output.edid.data(), output.edid.size()));
    Error error;
    if (!cd_edid_parse(edid.get(), bytes.get(), error.out()))
        error.Fail(kExitUnavailable, output.output + ": cannot read the display's EDID");
    SoughtDisplay sought{output.output,
                         builtIn,
                         Text(cd_edid_get_vendor_name(edid.get())),
                         Text(cd_edid_get_monitor_name(edid.get())),
                         Text(cd_edid_get_serial_number(edid.get())),
                         Text(cd_edid_get_checksum(edid.get())),
                         "xrandr"};
    for (const std::string* part : {&sought.vendor, &sought.model, &sought.serial})
        if (!part->empty()) sought.guessedId += "-" + *part;
    if (sought.guessedId == "xrandr") sought.guessedId += "-" + output.output;
    return sought;
}

// The display the choice names, with its EDID when the kernel has one.
SoughtDisplay Sought(const DisplayChoice& choice) {
    const bool builtIn = choice.output.empty();
    for (const OutputEdid& o : ConnectedEdids())
        if (builtIn ? display::IsBuiltInPanel(o.output) : o.output == choice.output) return FromEdid(o, builtIn);
    return {choice.output, builtIn, "", "", "", "", ""};
}

// Whether colord's device is the display, by any of the names a compositor
// registers it under: mutter's metadata (the connector as XRANDR_name, the
// EDID's MD5) and device id, KWin's device id (the connector itself), the
// EDID's vendor, model and serial, or, for the built-in panel, Embedded.
bool IsDisplay(CdDevice* device, const SoughtDisplay& sought) {
    const std::string id = Text(cd_device_get_id(device));
    const auto metadata = [&](const char* key) { return Text(cd_device_get_metadata_item(device, key)); };
    const auto same = [](const std::string& known, const std::string& registered) {
        return !known.empty() && known == registered;
    };
    if (same(sought.connector, id) || same(sought.connector, metadata(CD_DEVICE_METADATA_XRANDR_NAME)) ||
        same(sought.edidMd5, metadata(CD_DEVICE_METADATA_OUTPUT_EDID_MD5)) || same(sought.guessedId, id))
        return true;
    if (same(sought.vendor, Text(cd_device_get_vendor(device))) &&
        same(sought.model, Text(cd_device_get_model(device))) &&
        same(sought.serial, Text(cd_device_get_serial(device))))
        return true;
    return sought.builtIn && cd_device_get_embedded(device);
}

std::string Described(const SoughtDisplay& sought) {
    return sought.connector.empty() ? std::string("the built-in panel") : sought.connector;
}

// The device's profiles, each held by us: the device drops its own list
// whenever colord reports a change to it.
std::vector<Ref<CdProfile>> Profiles(CdDevice* device) {
    std::vector<Ref<CdProfile>> held;
    Array profiles(cd_device_get_profiles(device));
    for (guint i = 0; profiles && i < profiles->len; ++i)
        held.emplace_back(static_cast<CdProfile*>(g_object_ref(g_ptr_array_index(profiles.get(), i))));
    return held;
}

void RemoveOurs(CdClient* client, CdDevice* device, const std::string& folder, std::vector<std::string>* removed) {
    for (const auto& held : Profiles(device)) {
        CdProfile* profile = held.get();
        const std::string file = Filename(profile);
        if (!IsOurs(file, folder)) continue;
        Error error;
        if (!cd_device_remove_profile_sync(device, profile, nullptr, error.out()) ||
            !cd_client_delete_profile_sync(client, profile, nullptr, error.out()))
            error.Fail(kExitUnavailable, "colord did not let go of " + file);
        std::filesystem::remove(file);
        if (removed != nullptr) removed->push_back(file);
    }
}

// The profile object for the file, under the id GNOME gives a file in the
// user's ICC folder ("icc-" and its MD5), so that the session finds it again
// after a restart.
Ref<CdProfile> RegisterFile(CdClient* client, const std::string& path, const std::string& bytes) {
    gchar* checksum =
        g_compute_checksum_for_data(G_CHECKSUM_MD5, reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    const std::string id = std::string("icc-") + checksum;
    g_free(checksum);
    Error error;
    if (Ref<CdProfile> existing{cd_client_find_profile_sync(client, id.c_str(), nullptr, nullptr)}) {
        if (!cd_client_delete_profile_sync(client, existing.get(), nullptr, error.out()))
            error.Fail(kExitUnavailable, "colord did not let go of profile " + id);
    }
    GHashTable* properties = g_hash_table_new(g_str_hash, g_str_equal);
    g_hash_table_insert(properties, const_cast<char*>(CD_PROFILE_PROPERTY_FILENAME), const_cast<char*>(path.c_str()));
    Ref<CdProfile> profile(
        cd_client_create_profile_sync(client, id.c_str(), CD_OBJECT_SCOPE_NORMAL, properties, nullptr, error.out()));
    g_hash_table_unref(properties);
    if (!profile) error.Fail(kExitUnavailable, "colord refused " + path);
    return profile;
}

}  // namespace

DisplayIdentity ResolveDevice(const DisplayChoice& choice) {
    if (!choice.device.empty()) return {{}, {}, {}, choice.device};
    const SoughtDisplay sought = Sought(choice);
    Ref<CdClient> client = Connect();
    Error error;
    Array devices(cd_client_get_devices_by_kind_sync(client.get(), CD_DEVICE_KIND_DISPLAY, nullptr, error.out()));
    if (!devices) error.Fail(kExitUnavailable, "colord did not list its displays");
    std::vector<CdDevice*> found;
    for (guint d = 0; d < devices->len; ++d) {
        auto* device = static_cast<CdDevice*>(g_ptr_array_index(devices.get(), d));
        if (cd_device_connect_sync(device, nullptr, nullptr) && IsDisplay(device, sought)) found.push_back(device);
    }
    if (found.empty())
        throw ToolError(kExitUnavailable, "colord has no display device for " + Described(sought) +
                                              "; name it with --device (colormgr get-devices lists them)");
    if (found.size() > 1)
        throw ToolError(kExitUsage, "several colord devices match " + Described(sought) + "; choose one with --device");
    CdDevice* device = found.front();
    const std::string md5 = Text(cd_device_get_metadata_item(device, CD_DEVICE_METADATA_OUTPUT_EDID_MD5));
    return {sought.vendor.empty() ? Text(cd_device_get_vendor(device)) : sought.vendor,
            sought.model.empty() ? Text(cd_device_get_model(device)) : sought.model,
            sought.edidMd5.empty() ? md5 : sought.edidMd5, Text(cd_device_get_id(device))};
}

void InstallProfile(const std::string& deviceId, const ProfileFile& file) {
    Ref<CdClient> client = Connect();
    Ref<CdDevice> device = FindDevice(client.get(), deviceId);
    RemoveOurs(client.get(), device.get(), file.folder, nullptr);
    const std::string path = (std::filesystem::path(file.folder) / file.file).string();
    WriteFileAtomically(path, file.bytes);
    try {
        Ref<CdProfile> profile = RegisterFile(client.get(), path, file.bytes);
        Error error;
        if (!cd_device_add_profile_sync(device.get(), CD_DEVICE_RELATION_HARD, profile.get(), nullptr, error.out()) ||
            !cd_device_make_profile_default_sync(device.get(), profile.get(), nullptr, error.out()))
            error.Fail(kExitUnavailable, "colord did not make " + path + " the default of " + deviceId);
    } catch (const ToolError&) {
        std::filesystem::remove(path);
        throw;
    }
}

std::vector<std::string> RemoveProfiles(const std::string& deviceId, const std::string& folder) {
    Ref<CdClient> client = Connect();
    Ref<CdDevice> device = FindDevice(client.get(), deviceId);
    std::vector<std::string> removed;
    RemoveOurs(client.get(), device.get(), folder, &removed);
    return removed;
}

std::vector<Registration> ListProfiles() {
    Ref<CdClient> client = Connect();
    Error error;
    Array devices(cd_client_get_devices_by_kind_sync(client.get(), CD_DEVICE_KIND_DISPLAY, nullptr, error.out()));
    if (!devices) error.Fail(kExitUnavailable, "colord did not list its displays");
    std::vector<Registration> list;
    for (guint d = 0; d < devices->len; ++d) {
        auto* device = static_cast<CdDevice*>(g_ptr_array_index(devices.get(), d));
        if (!cd_device_connect_sync(device, nullptr, nullptr)) continue;
        const std::string id = cd_device_get_id(device);
        Ref<CdProfile> preferred(cd_device_get_default_profile(device));
        const std::string defaultPath = preferred ? cd_profile_get_object_path(preferred.get()) : "";
        const auto profiles = Profiles(device);
        if (profiles.empty()) list.push_back({id, "", "", false});
        for (const auto& held : profiles) {
            CdProfile* profile = held.get();
            const std::string file = Filename(profile);
            const char* profileId = cd_profile_get_id(profile);
            list.push_back(
                {id, profileId != nullptr ? profileId : "", file, defaultPath == cd_profile_get_object_path(profile)});
        }
    }
    return list;
}

}  // namespace quarnel::tool::colord
