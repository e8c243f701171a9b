// rkuinfo profiles.
#include "commands/command.h"

#include "model/tree.h"
#include "model/value.h"

namespace {

struct
{
    std::string action = "list";
    std::string name;
    std::string other;
} profilesArguments;

class ProfileList
{
public:
    explicit ProfileList(const Installation& installation)
        : m_root(installation.path(TarvoConfig::eProfilesRoot)),
          m_current(installation.profile()),
          m_stored(rkuinfo::text(installation.storedProfile().value()))
    {
    }

    void list(const Layout& layout) const
    {
        Table table;
        const std::optional<Key> root = Key::find(m_root);
        for (const Text& name : root ? root->keys() : std::vector<Text>()) {
            const bool isCurrent = equalIgnoringCase(name, m_current);
            table.addRow({{isCurrent ? "*" : "", Style::good}, {shown(name), Style::name}});
        }
        table.print(layout);
    }

    const Text& current() const { return m_current; }

    void create(const Text& name) const
    {
        requireNone(name);
        Key::make(joinedKey(m_root, name));
    }

    void select(const Text& name) const
    {
        require(name);
        Key::make(m_root).set(textValue({}, name));
    }

    void copy(const Text& name, const Text& other) const
    {
        const Node node = readTree(require(name));
        requireNone(other);
        std::vector<Change> all = changes(Node(), node, false);
        all.insert(all.begin(), {Change::Kind::added, {}, true, {}, {}});
        apply(joinedKey(m_root, other), all, [](std::size_t) {});
    }

    void remove(const Text& name) const
    {
        require(name);
        if (equalIgnoringCase(name, m_current) || equalIgnoringCase(name, m_stored)) {
            throw Failure("profile '" + shown(name) + "' is the current one: select another first");
        }
        const std::optional<Key> root = Key::find(m_root, KEY_ALL_ACCESS);
        if (!root) { // another process has removed it in between
            notFound(name);
        }
        root->removeKey(name);
    }

private:
    std::optional<Key> find(const Text& name) const { return Key::find(joinedKey(m_root, name)); }

    [[noreturn]] static void notFound(const Text& name)
    {
        throw Failure("profile '" + shown(name) + "': not found");
    }

    Key require(const Text& name) const
    {
        std::optional<Key> key = find(name);
        if (!key) {
            notFound(name);
        }
        return std::move(*key);
    }

    void requireNone(const Text& name) const
    {
        if (find(name)) {
            throw Failure("profile '" + shown(name) + "' is there already");
        }
    }

    Text m_root;
    Text m_current;
    Text m_stored; ///< what the next start takes, where an option names another for this run
};

Text checkedName(const std::string& word)
{
    constexpr std::size_t longest =
        uinfo::profileCapacity - 2; // that an application reads, with a terminator
    Text name = utf16(word);
    if (name.empty() || name.size() > longest || name.find_first_of(utf16("\\/")) != Text::npos) {
        throw Failure("a profile's name has 1 to 126 characters and no / and \\", exitUsage);
    }
    return name;
}

void profiles(Session& session)
{
    const std::string action =
        chosen(profilesArguments.action, {"list", "current", "create", "select", "copy", "delete"}, "action");
    const ProfileList all{Installation(session)};
    if (action == "list") {
        all.list(session.layout());
    } else if (action == "current") {
        print(shown(all.current()));
    } else if (action == "create") {
        all.create(checkedName(profilesArguments.name));
    } else if (action == "select") {
        all.select(checkedName(profilesArguments.name));
    } else if (action == "copy") {
        all.copy(checkedName(profilesArguments.name), checkedName(profilesArguments.other));
    } else {
        all.remove(checkedName(profilesArguments.name));
    }
}

} // namespace

Command profilesCommand()
{
    return {"profiles",
            "List, create, select, copy and delete profiles",
            {{"ACTION", "", &profilesArguments.action, "list, current, create, select, copy or delete"},
             {"NAME", "", &profilesArguments.name, "the profile"},
             {"COPY", "", &profilesArguments.other, "what copy makes of it"}},
            "The current profile, marked by *, cannot be deleted.",
            profiles};
}
