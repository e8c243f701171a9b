// agreement SEED COUNT: makes registry calls at random below one key, and prints what each answers. The same
// seed makes the same calls on every system, so equal output means that the systems agree. Where winhost
// deliberately differs (winhost/README.md) the calls are chosen to stay away, said here with "differs".
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Text = std::u16string; // of which no library takes the size to be another

constexpr const wchar_t* rootPath = L"Software\\RkUInfoAgreement";

/// The same numbers everywhere.
class Random
{
public:
    explicit Random(std::uint64_t seed) : m_state(seed * 2654435769U + 1) {}

    std::uint32_t below(std::uint32_t limit)
    {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(m_state >> 33) % limit;
    }

    template <typename List>
    auto oneOf(const List& all)
    {
        return all[below(static_cast<std::uint32_t>(std::size(all)))];
    }

private:
    std::uint64_t m_state;
};

std::vector<Text> split(const Text& all)
{
    std::vector<Text> parts(1);
    for (const char16_t unit : all) {
        if (unit == u'|') {
            parts.emplace_back();
        } else {
            parts.back() += unit;
        }
    }
    return parts;
}

const wchar_t* wide(const Text& text)
{
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

struct Handle
{
    HKEY key = nullptr;
    REGSAM access = 0;
};

void printBytes(const void* data, std::size_t size)
{
    const auto* const bytes = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < size; ++i) {
        std::printf("%02x", bytes[i]);
    }
}

class Session
{
public:
    explicit Session(std::uint64_t seed) : m_random(seed)
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, rootPath);
        m_root.access = KEY_ALL_ACCESS;
        makeRoot();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session()
    {
        for (const Handle& handle : m_handles) {
            RegCloseKey(handle.key);
        }
        RegDeleteTreeW(HKEY_CURRENT_USER, rootPath);
    }

    void call(unsigned number)
    {
        using Call = void (Session::*)();
        static constexpr Call calls[] = {
            &Session::create,    &Session::create,    &Session::create, &Session::open,
            &Session::open,      &Session::set,       &Session::set,    &Session::set,
            &Session::query,     &Session::query,     &Session::query,  &Session::enumerate,
            &Session::enumerate, &Session::enumerate, &Session::info,   &Session::deleteValue,
            &Session::deleteKey, &Session::close,
        };
        std::printf("%u ", number);
        (this->*m_random.oneOf(calls))();
        std::printf("\n");
    }

private:
    void makeRoot()
    {
        RegCloseKey(m_root.key);
        if (RegCreateKeyExW(HKEY_CURRENT_USER, rootPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_root.key,
                            nullptr) != ERROR_SUCCESS) {
            std::fputs("no registry\n", stderr);
            std::exit(1);
        }
    }

    /// Closed handles are tried where they are closed only: a system may give their number to another key.
    const Handle& handle()
    {
        const std::uint32_t index = m_random.below(static_cast<std::uint32_t>(m_handles.size()) + 3);
        std::printf("#%u ", index);
        return index < m_handles.size() ? m_handles[index] : m_root;
    }

    /// Hostile and often the same. Beyond ASCII the order of names differs where a letter's two cases are far
    /// apart.
    Text name()
    {
        static const std::vector<Text> names =
            split(u"a|A|b|Name|nAME|name two| "
                  u"|.|..|x/y|con|_|[|z\x01|%PATH%|{0}|\x00E9t\x00E9|\x00C9T\x00C9|\x0416|"
                  u"\x0436|\x65E5\x672C|\xD83D\xDE00|\xD800|\xDC00x|\xFFFF");
        static const std::uint32_t lengths[] = {246, 247, 248, 254, 255, 256, 257, 300};
        if (m_random.below(12) != 0) {
            return m_random.oneOf(names);
        }
        const std::uint32_t length = m_random.oneOf(lengths);
        return Text(length, m_random.below(2) == 0 ? u'l' : u'L');
    }

    const Text& printed(const Text& text)
    {
        for (const char16_t unit : text.substr(0, 60)) {
            std::printf(unit > 0x20 && unit < 0x7F ? "%c" : "<%x>", unit);
        }
        std::printf(" %zu ", text.size());
        return text;
    }

    /// One component that is too long stands alone: a create that fails leaves the keys before it, or not.
    Text path()
    {
        Text text = name();
        const std::uint32_t more = text.size() > 256 ? 0 : m_random.below(3);
        for (std::uint32_t i = 0; i < more; ++i) {
            Text next = name();
            if (next.size() > 256) {
                next.resize(256);
            }
            text += (m_random.below(9) == 0 ? u"\\\\" : u"\\") + next;
        }
        const std::uint32_t odd = m_random.below(30);
        return odd == 0 ? Text() : odd == 1 ? u"\\" + text : odd == 2 ? text + u"\\" : text;
    }

    /// The default value's name is empty, or null.
    Text valueName() { return m_random.below(8) == 0 ? Text() : name(); }
    const wchar_t* orNull(const Text& text)
    {
        return text.empty() && m_random.below(2) == 0 ? nullptr : wide(text);
    }

    REGSAM rights()
    {
        static const REGSAM all[] = {
            KEY_ALL_ACCESS,     KEY_ALL_ACCESS,         KEY_ALL_ACCESS,  KEY_READ,
            KEY_WRITE,          KEY_READ | KEY_WRITE,   KEY_QUERY_VALUE, KEY_SET_VALUE,
            KEY_CREATE_SUB_KEY, KEY_ENUMERATE_SUB_KEYS, KEY_NOTIFY};
        return m_random.oneOf(all);
    }

    void keep(LSTATUS status, HKEY key, REGSAM access)
    {
        std::printf("%d %d", static_cast<int>(status), key != nullptr);
        if (status != ERROR_SUCCESS) {
            return;
        }
        constexpr std::size_t most = 12;
        if (m_handles.size() == most) {
            const std::uint32_t gone = m_random.below(most);
            RegCloseKey(m_handles[gone].key);
            m_handles[gone] = {key, access};
        } else {
            m_handles.push_back({key, access});
        }
    }

    void create()
    {
        const Handle& parent = handle();
        const Text subKey = printed(path());
        const REGSAM access = rights();
        HKEY key = nullptr;
        DWORD disposition = 77;
        const LSTATUS status =
            RegCreateKeyExW(parent.key, wide(subKey), 0, nullptr, 0, access, nullptr, &key, &disposition);
        std::printf("create %x ", static_cast<unsigned>(access));
        keep(status, key, access);
        std::printf(" %u", subKey.empty() ? 0 : static_cast<unsigned>(disposition)); // differs
    }

    void open()
    {
        const Handle& parent = handle();
        const Text subKey = printed(path());
        const REGSAM access = rights();
        HKEY key = nullptr;
        const LSTATUS status = RegOpenKeyExW(parent.key, orNull(subKey), 0, access, &key);
        std::printf("open %x ", static_cast<unsigned>(access));
        keep(status, key, access);
    }

    void set()
    {
        static const DWORD types[] = {REG_SZ,    REG_SZ,   REG_EXPAND_SZ, REG_MULTI_SZ, REG_BINARY, REG_DWORD,
                                      REG_QWORD, REG_NONE, REG_LINK,      0x12345678,   0xFFFFFFFF};
        const Handle& key = handle();
        const Text name = printed(valueName());
        const DWORD type = m_random.oneOf(types);
        const std::uint32_t size =
            m_random.below(200) == 0 ? 5000 + m_random.below(5000) : m_random.below(24);
        std::string data;
        for (std::uint32_t i = 0; i < size; ++i) {
            data += static_cast<char>(m_random.below(3) == 0 ? 0 : m_random.below(256));
        }
        data += "zz"; // differs: a terminator behind a text is stored with it, or not
        const LSTATUS status =
            RegSetValueExW(key.key, orNull(name), 0, type, reinterpret_cast<const BYTE*>(data.data()), size);
        std::printf("set %u %u %d", static_cast<unsigned>(type), size, static_cast<int>(status));
    }

    /// Any room, and what it holds afterwards.
    std::vector<BYTE> room(DWORD& size)
    {
        size =
            m_random.below(20) == 0 ? 10000 : 2 + m_random.below(26); // differs: less than a unit for a text
        return std::vector<BYTE>(size + 1, 0xEE);
    }

    static void printData(LSTATUS status, const std::vector<BYTE>& data, DWORD type, DWORD size)
    {
        std::printf("%d %x %u ", static_cast<int>(status), static_cast<unsigned>(type),
                    static_cast<unsigned>(size));
        printBytes(data.data(), data.size());
    }

    void query()
    {
        const Handle& key = handle();
        const Text name = printed(valueName());
        DWORD type = 77;
        DWORD size = 0;
        std::vector<BYTE> data = room(size);
        BYTE* const out = m_random.below(6) == 0 ? nullptr : data.data();
        const LSTATUS status = RegQueryValueExW(key.key, orNull(name), nullptr, &type, out, &size);
        std::printf("query ");
        printData(status, data, type, size);
    }

    /// Sub-keys, or values, at times with their data.
    void enumerate()
    {
        const Handle& key = handle();
        const DWORD index = m_random.below(12);
        std::vector<wchar_t> name(401, L'?');
        DWORD length = m_random.below(3) == 0 ? m_random.below(6) : 400;
        DWORD type = 77;
        DWORD size = 0;
        std::vector<BYTE> data = room(size);
        const bool ofValues = m_random.below(2) == 0;
        const bool withMore = m_random.below(2) == 0;
        BYTE* const out = withMore ? data.data() : nullptr;
        DWORD* const outSize = withMore ? &size : nullptr;
        if (!ofValues) {
            size /= 2; // characters
        }
        const LSTATUS status =
            ofValues ? RegEnumValueW(key.key, index, name.data(), &length, nullptr, &type, out, outSize)
                     : RegEnumKeyExW(key.key, index, name.data(), &length, nullptr,
                                     reinterpret_cast<wchar_t*>(out), outSize, nullptr);
        std::printf("%s %u %u ", ofValues ? "value" : "key", static_cast<unsigned>(index),
                    static_cast<unsigned>(length));
        printBytes(name.data(), std::size_t{2} * (length + 1));
        std::printf(" ");
        printData(status, data, type, size);
    }

    void info()
    {
        const Handle& key = handle();
        if ((key.access & KEY_QUERY_VALUE) == 0) { // differs
            std::printf("no info");
            return;
        }
        wchar_t keyClass[10] = L"????";
        DWORD classLength = m_random.below(10);
        DWORD out[6] = {77, 77, 77, 77, 77, 77};
        const LSTATUS status = RegQueryInfoKeyW(key.key, keyClass, &classLength, nullptr, &out[0], &out[1],
                                                &out[2], &out[3], &out[4], &out[5], nullptr, nullptr);
        std::printf("info %d %u ", static_cast<int>(status), static_cast<unsigned>(classLength));
        printBytes(keyClass, 10);
        for (const DWORD number : out) {
            std::printf(" %u", static_cast<unsigned>(number));
        }
    }

    void deleteValue()
    {
        const Handle& key = handle();
        const Text name = printed(valueName());
        std::printf("delete value %d", static_cast<int>(RegDeleteValueW(key.key, orNull(name))));
    }

    /// Or a tree. Without a path that needs all rights: one that fails half-way leaves the rest, or
    /// everything.
    void deleteKey()
    {
        const Handle& key = handle();
        const Text subKey = printed(path());
        const bool mayTree = !subKey.empty() || (key.access & KEY_ALL_ACCESS) == KEY_ALL_ACCESS; // differs
        const bool isTree = mayTree && m_random.below(16) == 0;
        const LSTATUS status =
            isTree ? RegDeleteTreeW(key.key, wide(subKey)) : RegDeleteKeyW(key.key, wide(subKey));
        std::printf("delete %s %d", isTree ? "tree" : "key", static_cast<int>(status));
    }

    void close()
    {
        if (m_handles.empty() || m_random.below(10) == 0) {
            makeRoot(); // it may have been deleted
            std::printf("root");
            return;
        }
        const std::uint32_t index = m_random.below(static_cast<std::uint32_t>(m_handles.size()));
        HKEY key = m_handles[index].key;
        m_handles.erase(m_handles.begin() + index);
        const LSTATUS status = RegCloseKey(key);
        std::printf("close #%u %d %d", index, static_cast<int>(status), static_cast<int>(RegCloseKey(key)));
    }

    Random m_random;
    Handle m_root;
    std::vector<Handle> m_handles;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        return 2;
    }
    Session session(std::strtoull(argv[1], nullptr, 10));
    const unsigned long count = std::strtoul(argv[2], nullptr, 10);
    for (unsigned number = 1; number <= count; ++number) {
        session.call(number);
    }
    return 0;
}
