// The registry calls, with all access rights, unusual names and data, small buffers and invalid handles.
#include "agreement/trace.h"

#include "support/registry.h"

#include <gtest/gtest.h>

namespace {

using namespace agreement;
using testing_support::OwnedKey;

/// Returns an unusual or an ordinary name. Systems disagree on the order of names with non-ASCII letters, so
/// the list avoids names for which the order would matter.
Text name(Trace& trace)
{
    if (trace.oneIn(12)) {
        static const std::size_t lengths[] = {246, 247, 248, 254, 255, 256, 257, 300};
        const Text last = trace.word(u"l|L|m");
        const char16_t unit = trace.oneIn(2) ? u'l' : u'L';
        return Text(trace.oneOf(lengths) - 1, unit) + last;
    }
    return trace.word(trace.oneIn(2)
                          ? u"a|A|b|Name|nAME"
                          : u"a|b| |name two||.|..|x/y|con|_|[|z\x01|%PATH%|\x00E9t\x00E9|\x00C9T\x00C9|"
                            u"\x0416|\x0436|\x65E5\x672C|\xD83D\xDE00|\xD800|\xDC00x|\xFFFF");
}

/// Returns a path that consists of up to three names. A name of more than 256 characters gets a path of its
/// own, because some systems create the parent keys before they reject such a name.
Text path(Trace& trace)
{
    Text path = name(trace);
    for (std::uint32_t more = path.size() > 256 ? 0 : trace.below(3); more > 0; --more) {
        path += trace.oneIn(9) ? u"\\\\" : u"\\";
        path += name(trace).substr(0, 256);
    }
    const std::uint32_t odd = trace.below(30);
    return odd == 0 ? Text() : odd == 1 ? u"\\" + path : odd == 2 ? path + u"\\" : path;
}

struct Key
{
    OwnedKey handle;
    REGSAM access = KEY_ALL_ACCESS;
};

class Registry
{
public:
    explicit Registry(Trace& trace) : m_trace(trace)
    {
        testing_support::removeKey(HKEY_CURRENT_USER, rootPath);
        makeRoot();
    }

    /// Chooses random arguments, makes one random call, and records its result and output.
    void call()
    {
        static constexpr REGSAM rights[] = {
            KEY_ALL_ACCESS,     KEY_ALL_ACCESS,         KEY_ALL_ACCESS,  KEY_READ,
            KEY_WRITE,          KEY_READ | KEY_WRITE,   KEY_QUERY_VALUE, KEY_SET_VALUE,
            KEY_CREATE_SUB_KEY, KEY_ENUMERATE_SUB_KEYS, KEY_NOTIFY};
        static constexpr DWORD types[] = {REG_SZ,     REG_SZ,     REG_EXPAND_SZ, REG_MULTI_SZ,
                                          REG_BINARY, REG_DWORD,  REG_QWORD,     REG_NONE,
                                          REG_LINK,   0x12345678, 0xFFFFFFFF};
        const Text call =
            m_trace.word(u"create|create|create|open|open|set|set|set|query|query|query|sub-key|sub-key|"
                         u"value|info|delete value|delete key|delete tree|close|root");
        const std::size_t index = m_trace.below(std::size(m_keys) + 3);
        const bool isRoot = index >= std::size(m_keys) || m_keys[index].handle == nullptr;
        Key& key = isRoot ? m_root : m_keys[index];
        const HKEY none = m_trace.oneIn(2) ? nullptr : reinterpret_cast<HKEY>(ULONG_PTR{0x7654321});
        const HKEY handle = m_trace.oneIn(50) ? none : key.handle.get();
        const Text subKey = path(m_trace);
        const Text valueName = m_trace.oneIn(300) ? Text(16383, u'v') : name(m_trace);
        const wchar_t* const value = valueName.empty() && m_trace.oneIn(2) ? nullptr : wide(valueName);
        const REGSAM access = m_trace.oneOf(rights);
        DWORD type = m_trace.oneOf(types);
        DWORD number = m_trace.oneIn(50) ? 0x80000000 : m_trace.below(12);
        std::vector<BYTE> data = bytes();
        auto size = static_cast<DWORD>(data.size());
        BYTE* const out = m_trace.oneIn(6) ? nullptr : data.data();
        wchar_t text[400] = L"????????";
        DWORD length = m_trace.oneIn(3) ? m_trace.below(6) : 400;
        DWORD counts[6] = {};
        HKEY opened = nullptr;
        LSTATUS status = ERROR_SUCCESS;
        m_trace.start(call, index, handle != key.handle.get(), subKey, valueName, access, type, number, size,
                      out != nullptr, length);

        if (call == u"create") {
            status = RegCreateKeyExW(handle, wide(subKey), 0, nullptr, 0, access, nullptr, &opened, &number);
            number = subKey.empty() ? 0 : number; // depends on the system
        } else if (call == u"open") {
            status = RegOpenKeyExW(handle, subKey.empty() ? nullptr : wide(subKey), 0, access, &opened);
        } else if (call == u"set") {
            status = RegSetValueExW(handle, value, 0, type, out, size - 2);
        } else if (call == u"query") {
            status = RegQueryValueExW(handle, value, nullptr, &type, out, number == 0 ? nullptr : &size);
            size = status == ERROR_INVALID_HANDLE ? 0 : size; // depends on the system
        } else if (call == u"sub-key") {
            size /= 2; // characters
            status = RegEnumKeyExW(handle, number, text, &length, nullptr, reinterpret_cast<wchar_t*>(out),
                                   &size, nullptr);
        } else if (call == u"value") {
            status = RegEnumValueW(handle, number, text, &length, nullptr, &type, out, &size);
        } else if (call == u"info" && (key.access & KEY_QUERY_VALUE) != 0) {
            // Without KEY_QUERY_VALUE, the result depends on the system.
            status = RegQueryInfoKeyW(handle, text, &length, nullptr, &counts[0], &counts[1], &counts[2],
                                      &counts[3], &counts[4], &counts[5], nullptr, nullptr);
        } else if (call == u"delete value") {
            status = RegDeleteValueW(handle, value);
        } else if (call == u"delete key") {
            status = RegDeleteKeyW(handle, wide(subKey));
        } else if (call == u"delete tree" &&
                   (!subKey.empty() || key.access == KEY_ALL_ACCESS || key.access == KEY_NOTIFY)) {
            status = RegDeleteTreeW(handle, wide(subKey)); // the keys that remain depend on the system
            status = subKey.empty() ? status != ERROR_SUCCESS : status; // depends on the system
        } else if (call == u"close" && !isRoot) {
            const HKEY closed = key.handle.release();
            status = RegCloseKey(closed);
            number = DWORD(RegCloseKey(closed)); // a second close, before the handle is reused
        } else if (call == u"root") {
            makeRoot(); // the root may have been deleted
        }
        m_trace.say(status, opened != nullptr, type, number, size, data, length, utf16(text), counts);
        if (opened != nullptr) {
            m_trace.oneOf(m_keys) = {OwnedKey(opened), access};
        }
    }

private:
    static constexpr const char* rootPath = "Software\\Agreement";

    void makeRoot() { m_root.handle = testing_support::makeKey(HKEY_CURRENT_USER, rootPath); }

    /// Returns a buffer of random data for a call that reads or writes a value.
    /// The buffer is never empty, because Wine and winhost treat empty buffers differently. The last two
    /// bytes, "zz", are not stored. If these bytes were a terminator, some systems would store them.
    std::vector<BYTE> bytes()
    {
        std::vector<BYTE> bytes(m_trace.oneIn(100) ? 10000 : 2 + m_trace.below(26), 'z');
        for (std::size_t i = 2; i < bytes.size(); ++i) {
            bytes[i - 2] = static_cast<BYTE>(m_trace.oneIn(3) ? 0 : m_trace.below(256));
        }
        return bytes;
    }

    Trace& m_trace;
    Key m_root;
    Key m_keys[12];
};

TEST(Winhost, AgreesWithWineOnRegistryCalls)
{
    expectAgreement("registry", [](Trace& trace) {
        Registry registry(trace);
        for (int call = 0; call < 5000; ++call) {
            registry.call();
        }
    });
}

} // namespace
