#include "support/scratch.h"

#include "support/isolation.h"
#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

namespace testing_support {

namespace fs = std::filesystem;

namespace {

#if defined(_WIN32)
constexpr std::string_view programSuffix = ".exe";
#else
constexpr std::string_view programSuffix = "";
#endif

class OwnedFolder
{
public:
    OwnedFolder()
    {
        constexpr char variable[] = "RKUINFO_TEST_SCRATCH";
        if (const char* const parents = std::getenv(variable)) {
            path = parents;
            return;
        }
        std::random_device random;
        do {
            path = fs::path(RKUINFO_TEST_SCRATCH) / std::to_string(random());
        } while (!fs::create_directories(path));
        shareWithChildren(variable, path.string());
        m_owner = true;
    }
    OwnedFolder(const OwnedFolder&) = delete;
    OwnedFolder& operator=(const OwnedFolder&) = delete;
    ~OwnedFolder()
    {
        if (m_owner) {
            std::error_code ignored;
            fs::remove_all(path, ignored);
        }
    }

    fs::path path;

private:
    bool m_owner = false;
};

} // namespace

const fs::path& scratchFolder()
{
    static const OwnedFolder folder;
    return folder.path;
}

std::string windowsPath(const fs::path& path)
{
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text.starts_with('\\') ? "Z:" + text : text;
}

void writeFile(const fs::path& file, std::string_view bytes)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string readFile(const fs::path& file)
{
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

fs::path thisProgram()
{
    wchar_t path[1024] = {};
    GetModuleFileNameW(nullptr, path, 1024);
    std::string text = utf8(path);
    std::replace(text.begin(), text.end(), '\\', '/');
#if !defined(_WIN32)
    text.erase(0, 2); // the drive
#endif
    return text;
}

Application::Application(std::string_view folderName) : m_folder(scratchFolder() / folderName)
{
    fs::create_directories(m_folder);
    fs::create_hard_link(thisProgram(), program());
#if defined(_WIN32)
    for (const auto& entry : fs::directory_iterator(thisProgram().parent_path())) {
        if (entry.path().extension() == ".dll") {
            fs::create_hard_link(entry.path(), m_folder / entry.path().filename());
        }
    }
#endif
}

fs::path Application::program() const
{
    return m_folder / ("cad" + std::string(programSuffix));
}

fs::path Application::addProgram(std::string_view name) const
{
    const std::string fileName = std::string(name) + std::string(programSuffix);
    fs::create_hard_link(thisProgram().parent_path() / fileName, m_folder / fileName);
    return m_folder / fileName;
}

void Application::addLanguage(std::string_view shortName) const
{
    const fs::path folder = m_folder / shortName;
    fs::create_directories(folder);
    fs::create_hard_link(thisProgram().parent_path() / shortName / "RkUInfoRes.dll",
                         folder / "RkUInfoRes.dll");
}

void Application::writeIni(std::string_view text, std::string_view fileName) const
{
    writeFile(m_folder / fileName, text);
}

} // namespace testing_support
