// GKeyFile in memory, and dconf on a database created by "dconf compile".
#include "peers.h"

#include <dconf.h>
#include <glib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace {

class KeyFile final : public bench::Peer
{
public:
    KeyFile()
    {
        for (int i = 1; i < bench::peerEntries; ++i) {
            g_key_file_set_integer(m_file, "Display", ("Setting" + std::to_string(i)).c_str(), i);
        }
        g_key_file_set_integer(m_file, "Display", "Frames", 60);
    }
    ~KeyFile() override { g_key_file_unref(m_file); }

    int read() override { return g_key_file_get_integer(m_file, "Display", "Frames", nullptr); }

private:
    GKeyFile* const m_file = g_key_file_new();
};

class Dconf final : public bench::Peer
{
public:
    explicit Dconf(const std::string& folder)
    {
        std::filesystem::create_directory(folder + "/keys");
        std::ofstream entries(folder + "/keys/settings");
        entries << "[Display]\nFrames=60\n";
        for (int i = 1; i < bench::peerEntries; ++i) {
            entries << "Setting" << i << '=' << i << '\n';
            m_paths.push_back("/Display/Setting" + std::to_string(i));
        }
        entries.close();
        std::ofstream(folder + "/profile") << "file-db:" << folder << "/settings.dconf\n";
        if (std::system(("dconf compile " + folder + "/settings.dconf " + folder + "/keys").c_str()) != 0) {
            throw std::runtime_error("dconf compile");
        }
        setenv("DCONF_PROFILE", (folder + "/profile").c_str(), 1);
        m_client = dconf_client_new();
    }
    ~Dconf() override { g_object_unref(m_client); }

    int read() override { return readAt("/Display/Frames"); }

    int readNext() override { return readAt(m_paths[m_next++ % m_paths.size()].c_str()); }

private:
    int readAt(const char* path)
    {
        GVariant* const value = dconf_client_read(m_client, path);
        if (value == nullptr) {
            return -1;
        }
        const int number = g_variant_get_int32(value);
        g_variant_unref(value);
        return number;
    }

    std::vector<std::string> m_paths;
    std::size_t m_next = 0;
    DConfClient* m_client = nullptr;
};

} // namespace

std::unique_ptr<bench::Peer> bench::openKeyFile(const std::string&)
{
    return std::make_unique<KeyFile>();
}

std::unique_ptr<bench::Peer> bench::openDconf(const std::string& folder)
{
    return std::make_unique<Dconf>(folder);
}
