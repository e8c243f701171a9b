// The registry calls: with each right, hostile names and data, too little room, and handles that are none.
#include "agreement/trace.h"

#include "support/registry.h"

#include <gtest/gtest.h>

namespace {

using namespace agreement;
using testing_support::OwnedKey;

class Registry
{
public:
    explicit Registry(Trace& trace) : m_trace(trace)
    {
        testing_support::removeKey(HKEY_CURRENT_USER, rootPath);
        makeRoot();
    }

    void call()
    {
        static constexpr std::pair<const char*, void (Registry::*)()> calls[] = {
            {"create", &Registry::create},
            {"open", &Registry::open},
            {"set", &Registry::set},
            {"query", &Registry::query},
            {"enumerate", &Registry::enumerate},
            {"info", &Registry::info},
            {"delete value", &Registry::deleteValue},
            {"delete key", &Registry::deleteKey},
            {"close", &Registry::close},
        };
        static constexpr std::uint32_t shares[] = {0, 0, 0, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 6, 7, 8};
        const auto& [name, run] = calls[m_trace.oneOf(shares)];
        m_trace.start(name);
        (this->*run)();
    }

private:
    struct Handle
    {
        HKEY key;
        REGSAM access;
    };

    static constexpr const char* rootPath = "Software\\Agreement";

    void makeRoot() { m_root = testing_support::makeKey(HKEY_CURRENT_USER, rootPath); }

    /// Closed handles are tried where they are closed only: a system may give their number to another key.
    Handle handle()
    {
        const std::size_t index = m_trace.below(m_keys.size() + 3);
        m_trace.say(index);
        if (index < m_keys.size()) {
            return {m_keys[index].first.get(), m_keys[index].second};
        }
        const std::uint32_t odd = m_trace.below(20);
        m_trace.say(odd);
        HKEY const none = odd == 0 ? nullptr : reinterpret_cast<HKEY>(ULONG_PTR{0x7654321});
        return {odd < 2 ? none : m_root.get(), KEY_ALL_ACCESS};
    }

    /// Hostile and often the same. Beyond ASCII the order of names differs where a letter's two cases are far
    /// apart.
    Text name()
    {
        static const Text names[] = {u"a",
                                     u"A",
                                     u"b",
                                     u"Name",
                                     u"nAME",
                                     u"name two",
                                     u" ",
                                     u"",
                                     u".",
                                     u"..",
                                     u"x/y",
                                     u"con",
                                     u"_",
                                     u"[",
                                     u"z\x01",
                                     u"%PATH%",
                                     u"{0}",
                                     u"\x00E9t\x00E9",
                                     u"\x00C9T\x00C9",
                                     u"\x0416",
                                     u"\x0436",
                                     u"\x65E5\x672C",
                                     u"\xD83D\xDE00",
                                     u"\xD800",
                                     u"\xDC00x",
                                     u"\xFFFF"};
        if (!m_trace.oneIn(12)) {
            return m_trace.oneIn(2) ? m_trace.oneOf(names) : names[m_trace.below(5)];
        }
        static const std::size_t lengths[] = {246, 247, 248, 254, 255, 256, 257, 300};
        const Text common(m_trace.oneOf(lengths) - 1, m_trace.oneIn(2) ? u'l' : u'L');
        return common + m_trace.oneOf(Text(u"lLm"));
    }

    /// One component that is too long stands alone: a create that fails leaves the keys before it, or not.
    Text path()
    {
        Text path = name();
        for (std::uint32_t more = path.size() > 256 ? 0 : m_trace.below(3); more > 0; --more) {
            path += m_trace.oneIn(9) ? u"\\\\" : u"\\";
            path += name().substr(0, 256);
        }
        const std::uint32_t odd = m_trace.below(30);
        path = odd == 0 ? Text() : odd == 1 ? u"\\" + path : odd == 2 ? path + u"\\" : path;
        m_trace.say(path);
        return path;
    }

    Text valueName()
    {
        const Text text = m_trace.oneIn(100) ? Text(16383, u'v') : name();
        m_trace.say(text);
        return text;
    }

    /// The default value's name is empty, or null.
    const wchar_t* orNull(const Text& text)
    {
        return text.empty() && m_trace.oneIn(2) ? nullptr : wide(text);
    }

    REGSAM rights()
    {
        static const REGSAM all[] = {
            KEY_ALL_ACCESS,     KEY_ALL_ACCESS,         KEY_ALL_ACCESS,  KEY_READ,
            KEY_WRITE,          KEY_READ | KEY_WRITE,   KEY_QUERY_VALUE, KEY_SET_VALUE,
            KEY_CREATE_SUB_KEY, KEY_ENUMERATE_SUB_KEYS, KEY_NOTIFY};
        const REGSAM access = m_trace.oneOf(all);
        m_trace.say(access);
        return access;
    }

    void keep(LSTATUS status, HKEY key, REGSAM access)
    {
        m_trace.say(status, key != nullptr);
        constexpr std::size_t most = 12;
        if (status == ERROR_SUCCESS && m_keys.size() == most) {
            m_keys.erase(m_keys.begin() + m_trace.below(most));
        }
        if (status == ERROR_SUCCESS) {
            m_keys.emplace_back(OwnedKey(key), access);
        }
    }

    void create()
    {
        HKEY const parent = handle().key;
        const Text subKey = path();
        const REGSAM access = rights();
        HKEY key = nullptr;
        DWORD disposition = 77;
        keep(RegCreateKeyExW(parent, wide(subKey), 0, nullptr, 0, access, nullptr, &key, &disposition), key,
             access);
        m_trace.say(subKey.empty() ? 0 : disposition); // differs
    }

    void open()
    {
        HKEY const parent = handle().key;
        const Text subKey = path();
        const REGSAM access = rights();
        HKEY key = nullptr;
        keep(RegOpenKeyExW(parent, orNull(subKey), 0, access, &key), key, access);
    }

    void set()
    {
        static const DWORD types[] = {REG_SZ,    REG_SZ,   REG_EXPAND_SZ, REG_MULTI_SZ, REG_BINARY, REG_DWORD,
                                      REG_QWORD, REG_NONE, REG_LINK,      0x12345678,   0xFFFFFFFF};
        HKEY const key = handle().key;
        const Text name = valueName();
        const DWORD type = m_trace.oneOf(types);
        const DWORD size = m_trace.oneIn(200) ? 5000 + m_trace.below(5000) : m_trace.below(24);
        Bytes data(size + 2, 'z'); // differs: a terminator behind a text is stored with it, or not
        for (DWORD i = 0; i < size; ++i) {
            data[i] = static_cast<BYTE>(m_trace.oneIn(3) ? 0 : m_trace.below(256));
        }
        BYTE* const from = m_trace.oneIn(40) ? nullptr : data.data();
        m_trace.say(type, size, from != nullptr, RegSetValueExW(key, orNull(name), 0, type, from, size));
    }

    /// For data, of which one byte less is offered and what is written shows. At least a unit: differs.
    Bytes room() { return Bytes(m_trace.oneIn(20) ? 10001 : 3 + m_trace.below(26), 0xEE); }

    void query()
    {
        HKEY const key = handle().key;
        const Text name = valueName();
        Bytes data = room();
        auto size = static_cast<DWORD>(data.size() - 1);
        DWORD type = 77;
        BYTE* const out = m_trace.oneIn(6) ? nullptr : data.data();
        const LSTATUS status =
            RegQueryValueExW(key, orNull(name), nullptr, &type, out, m_trace.oneIn(9) ? nullptr : &size);
        m_trace.say(status, type, out != nullptr, data, status == ERROR_INVALID_HANDLE ? 0 : size); // differs
    }

    /// Sub-keys, or values.
    void enumerate()
    {
        HKEY const key = handle().key;
        const bool ofValues = m_trace.oneIn(2);
        const DWORD index = m_trace.oneIn(50) ? 0x80000000 : m_trace.below(12);
        std::vector<wchar_t> name(16385, L'?');
        DWORD length = m_trace.oneIn(3) ? m_trace.below(6) : 16384;
        Bytes data = room();
        auto size = static_cast<DWORD>(data.size() - 1) / (ofValues ? 1 : 2);
        DWORD type = 77;
        BYTE* const out = m_trace.oneIn(2) ? nullptr : data.data();
        const LSTATUS status =
            ofValues ? RegEnumValueW(key, index, name.data(), &length, nullptr, &type, out, &size)
                     : RegEnumKeyExW(key, index, name.data(), &length, nullptr,
                                     reinterpret_cast<wchar_t*>(out), &size, nullptr);
        name.resize(length + 1);
        m_trace.say(ofValues, index, status, type, size, data, name);
    }

    void info()
    {
        const auto [key, access] = handle();
        if ((access & KEY_QUERY_VALUE) == 0) { // differs
            return;
        }
        wchar_t keyClass[10] = L"????";
        DWORD length = m_trace.below(10);
        DWORD out[6] = {77, 77, 77, 77, 77, 77};
        const LSTATUS status = RegQueryInfoKeyW(key, keyClass, &length, nullptr, &out[0], &out[1], &out[2],
                                                &out[3], &out[4], &out[5], nullptr, nullptr);
        m_trace.say(status, length, keyClass, out);
    }

    void deleteValue()
    {
        HKEY const key = handle().key;
        const Text name = valueName();
        m_trace.say(RegDeleteValueW(key, orNull(name)));
    }

    /// Or a tree: without a path only what fails at once or not at all, as it differs in what a failure
    /// leaves.
    void deleteKey()
    {
        constexpr REGSAM needed = KEY_ENUMERATE_SUB_KEYS | KEY_SET_VALUE;
        const auto [key, access] = handle();
        const Text subKey = path();
        const bool mayTree = !subKey.empty() || (access & needed) != KEY_ENUMERATE_SUB_KEYS;
        const bool isTree = mayTree && m_trace.oneIn(12);
        m_trace.say(isTree, isTree ? RegDeleteTreeW(key, orNull(subKey)) : RegDeleteKeyW(key, wide(subKey)));
    }

    void close()
    {
        if (m_keys.empty() || m_trace.oneIn(10)) {
            makeRoot(); // it may have been deleted
            return;
        }
        const std::uint32_t index = m_trace.below(m_keys.size());
        HKEY const key = m_keys[index].first.release();
        m_keys.erase(m_keys.begin() + index);
        m_trace.say(index, RegCloseKey(key));
        m_trace.say(RegCloseKey(key));
    }

    Trace& m_trace;
    OwnedKey m_root;
    std::vector<std::pair<OwnedKey, REGSAM>> m_keys;
};

TEST(Agreement, OfTheRegistry)
{
    expectAgreement("registry", [](Trace& trace) {
        Registry registry(trace);
        for (int call = 0; call < 5000; ++call) {
            registry.call();
        }
    });
}

} // namespace
