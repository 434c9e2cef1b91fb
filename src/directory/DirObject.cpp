#include "directory/DirObject.h"

#include <charconv>
#include <map>
#include <set>

#include "platform/LdapConnection.h"
#include "platform/Strings.h"

namespace orin {

using platform::LdapEntry;
using platform::LdapMod;
using platform::LdapStatus;
using platform::LdapValues;

struct DirObjectState {
    std::shared_ptr<platform::LdapConnection> connection;
    std::string server;  // server part of the paths handed back; "" for none
    std::string dn;
    std::string newClass;  // the class given to Create, until the object is written
    bool loaded = false;   // the entry's attributes were read as a whole
    // Lower-case attribute name -> values as the server holds them. Before a whole read it may
    // hold a few values known from a search (objectClass of a child, cn of a member).
    std::map<std::string, LdapValues> cache;
    std::set<std::string> askedAlone;  // attributes read one by one (constructed ones)
    std::vector<LdapMod> stage;
};

namespace {

constexpr std::string_view kLdapPrefix = "LDAP://";

DirStatus FromLdap(const LdapStatus& s) {
    return DirStatus::Error(s.code, s.message);
}

DirStatus NotBound() {
    return DirStatus::Error(kDirNotBound, "object not bound");
}

// Index of the first "," that ends a relative name, or npos.
size_t RdnEnd(std::string_view dn) {
    bool quoted = false;
    for (size_t i = 0; i < dn.size(); ++i) {
        char c = dn[i];
        if (c == '\\') {
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            return i;
        }
    }
    return std::string_view::npos;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// UTF-8 to UTF-16LE; false for bytes that aren't UTF-8.
bool Utf16Le(std::string_view utf8, std::string& out) {
    out.clear();
    auto put = [&out](uint32_t unit) {
        out.push_back(static_cast<char>(unit & 0xFF));
        out.push_back(static_cast<char>(unit >> 8));
    };
    for (size_t i = 0; i < utf8.size();) {
        uint8_t c = static_cast<uint8_t>(utf8[i]);
        uint32_t cp;
        size_t n;
        if (c < 0x80) {
            cp = c, n = 1;
        } else if ((c & 0xE0) == 0xC0) {
            cp = c & 0x1F, n = 2;
        } else if ((c & 0xF0) == 0xE0) {
            cp = c & 0x0F, n = 3;
        } else if ((c & 0xF8) == 0xF0) {
            cp = c & 0x07, n = 4;
        } else {
            return false;
        }
        if (i + n > utf8.size()) return false;
        for (size_t k = 1; k < n; ++k) {
            uint8_t t = static_cast<uint8_t>(utf8[i + k]);
            if ((t & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (t & 0x3F);
        }
        static constexpr uint32_t kMin[] = {0, 0, 0x80, 0x800, 0x10000};
        if (cp < kMin[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            put(0xD800 + (cp >> 10));
            put(0xDC00 + (cp & 0x3FF));
        } else {
            put(cp);
        }
        i += n;
    }
    return true;
}

// Applies staged changes of one attribute, in order, to its values.
void ApplyStage(const std::vector<LdapMod>& stage, std::string_view attr, LdapValues& values) {
    for (const auto& m : stage) {
        if (!EqualsIgnoreCase(m.attribute, attr)) continue;
        switch (m.op) {
            case LdapMod::Op::Replace:
                values = m.values;
                break;
            case LdapMod::Op::Add:
                values.insert(values.end(), m.values.begin(), m.values.end());
                break;
            case LdapMod::Op::Delete:
                if (m.values.empty()) {
                    values.clear();
                } else {
                    std::erase_if(values, [&m](const std::string& v) {
                        for (const auto& d : m.values) {
                            if (v == d) return true;
                        }
                        return false;
                    });
                }
                break;
        }
    }
}

void FillCache(DirObjectState& s, const LdapEntry& entry) {
    s.cache.clear();
    s.askedAlone.clear();
    s.dn = entry.dn;
    for (const auto& a : entry.attributes) {
        std::string key = ToLowerAscii(a.name.substr(0, a.name.find(';')));
        LdapValues& values = s.cache[key];
        values.insert(values.end(), a.values.begin(), a.values.end());
    }
    s.loaded = true;
}

DirStatus ReadEntry(DirObjectState& s) {
    LdapEntry entry;
    LdapStatus status = s.connection->Read(s.dn, {"*"}, entry);
    if (!status.ok()) return FromLdap(status);
    // A server that caps the values of an answer names the attribute with the range it gave
    // ("member;range=0-1499"): read such attributes whole.
    for (auto& a : entry.attributes) {
        long first = 0, last = 0;
        if (platform::ParseRange(a.name, first, last) && last >= 0) {
            std::string name = a.name.substr(0, a.name.find(';'));
            status = s.connection->ReadAllValues(entry.dn, name, a.values);
            if (!status.ok()) return FromLdap(status);
            a.name = name;
        }
    }
    FillCache(s, entry);
    return DirStatus::Ok();
}

void Invalidate(DirObjectState& s) {
    s.loaded = false;
    s.cache.clear();
    s.askedAlone.clear();
}

}  // namespace

// --- Distinguished-name text ---

std::string FirstRdn(std::string_view dn) {
    return std::string(dn.substr(0, RdnEnd(dn)));
}

std::string ParentDn(std::string_view dn) {
    size_t end = RdnEnd(dn);
    return end == std::string_view::npos ? std::string() : std::string(dn.substr(end + 1));
}

std::string RdnValue(std::string_view rdn) {
    size_t eq = rdn.find('=');
    if (eq == std::string_view::npos) return {};
    std::string_view v = rdn.substr(eq + 1);
    std::string out;
    for (size_t i = 0; i < v.size(); ++i) {
        if (v[i] != '\\' || i + 1 >= v.size()) {
            out.push_back(v[i]);
            continue;
        }
        int hi = HexDigit(v[i + 1]), lo = i + 2 < v.size() ? HexDigit(v[i + 2]) : -1;
        if (hi >= 0 && lo >= 0) {
            out.push_back(static_cast<char>(hi * 16 + lo));
            i += 2;
        } else {
            out.push_back(v[++i]);
        }
    }
    return out;
}

std::string DnFromPath(std::string_view path) {
    std::string_view rest = path;
    if (StartsWithIgnoreCase(rest, kLdapPrefix)) rest.remove_prefix(kLdapPrefix.size());
    size_t slash = rest.find('/');
    if (slash != std::string_view::npos && rest.substr(0, slash).find('=') == std::string::npos) {
        rest.remove_prefix(slash + 1);
    }
    return std::string(rest);
}

// --- Binding ---

DirResult<DirObject> DirObject::Load(std::shared_ptr<platform::LdapConnection> connection,
                                     std::string server, std::string_view dn) {
    if (!connection) return DirStatus::Error(kDirNotConnected, "no connection");
    if (dn.empty()) return DirStatus::Error(kDirBadArgument, "empty distinguished name");
    auto state = std::make_shared<DirObjectState>();
    state->connection = std::move(connection);
    state->server = std::move(server);
    state->dn = std::string(dn);
    DirStatus status = ReadEntry(*state);
    if (!status.ok()) return status;
    return DirObject(std::move(state));
}

DirObject DirObject::Related(std::string dn) const {
    auto state = std::make_shared<DirObjectState>();
    state->connection = state_->connection;
    state->server = state_->server;
    state->dn = std::move(dn);
    return DirObject(std::move(state));
}

DirObject DirObject::OtherEntry(std::string_view dn) const {
    if (!state_) return {};
    return Related(std::string(dn));
}

// --- Identity ---

std::string DirObject::DN() const {
    return state_ ? state_->dn : std::string();
}

std::string DirObject::ADsPath() const {
    if (!state_) return {};
    std::string path(kLdapPrefix);
    if (!state_->server.empty()) path += state_->server + "/";
    return path + state_->dn;
}

std::string DirObject::Name() const {
    return state_ ? FirstRdn(state_->dn) : std::string();
}

std::string DirObject::Parent() const {
    if (!state_) return {};
    std::string path(kLdapPrefix);
    if (!state_->server.empty()) path += state_->server + "/";
    return path + ParentDn(state_->dn);
}

std::string DirObject::Class() const {
    if (!state_) return {};
    if (!state_->newClass.empty()) return state_->newClass;
    auto it = state_->cache.find("objectclass");
    if (it == state_->cache.end()) {
        if (!EnsureLoaded().ok()) return {};
        it = state_->cache.find("objectclass");
    }
    // Active Directory lists the classes from "top" down to the most specific one.
    if (it == state_->cache.end() || it->second.empty()) return {};
    return it->second.back();
}

// --- Property cache ---

DirStatus DirObject::EnsureLoaded() const {
    if (!state_) return NotBound();
    if (state_->loaded || !state_->newClass.empty()) return DirStatus::Ok();
    return ReadEntry(*state_);
}

DirStatus DirObject::FetchOne(std::string_view attr) const {
    // Constructed attributes (canonicalName, tokenGroups...) come only when asked by name.
    std::string key = ToLowerAscii(attr);
    if (!state_->askedAlone.insert(key).second) return DirStatus::Ok();
    LdapEntry entry;
    LdapStatus status = state_->connection->Read(state_->dn, {std::string(attr)}, entry);
    if (!status.ok()) return FromLdap(status);
    for (const auto& a : entry.attributes) {
        if (EqualsIgnoreCase(a.name.substr(0, a.name.find(';')), attr)) {
            LdapValues& values = state_->cache[key];
            values.insert(values.end(), a.values.begin(), a.values.end());
        }
    }
    return DirStatus::Ok();
}

DirResult<std::vector<std::string>> DirObject::Effective(std::string_view attr) {
    if (!state_) return NotBound();
    std::string key = ToLowerAscii(attr);
    LdapValues values;
    if (state_->newClass.empty()) {
        auto it = state_->cache.find(key);
        if (it == state_->cache.end()) {
            DirStatus status = EnsureLoaded();
            if (!status.ok()) return status;
            it = state_->cache.find(key);
        }
        if (it == state_->cache.end() && state_->connection->IsOnRequestAttribute(attr)) {
            DirStatus status = FetchOne(attr);
            if (!status.ok()) return status;
            it = state_->cache.find(key);
        }
        if (it != state_->cache.end()) values = it->second;
    }
    ApplyStage(state_->stage, attr, values);
    return values;
}

DirResult<std::string> DirObject::Get(std::string_view attr) {
    auto values = Effective(attr);
    if (!values.ok()) return values.status();
    if (values->empty()) return DirStatus::Error(kDirNoValue, std::string(attr) + ": no value");
    if (values->size() > 1) {
        return DirStatus::Error(kDirTypeMismatch, std::string(attr) + ": several values");
    }
    return values->front();
}

DirResult<std::vector<std::string>> DirObject::GetEx(std::string_view attr) {
    auto values = Effective(attr);
    if (!values.ok()) return values.status();
    if (values->empty()) return DirStatus::Error(kDirNoValue, std::string(attr) + ": no value");
    return values;
}

DirResult<int64_t> DirObject::GetNumber(std::string_view attr) {
    auto text = Get(attr);
    if (!text.ok()) return text.status();
    int64_t number = 0;
    const std::string& t = *text;
    auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), number);
    if (ec != std::errc() || end != t.data() + t.size()) {
        return DirStatus::Error(kDirTypeMismatch, std::string(attr) + ": not a number");
    }
    return number;
}

DirResult<Bytes> DirObject::GetBinary(std::string_view attr) {
    if (!state_) return NotBound();
    bool staged = false;
    for (const auto& m : state_->stage) staged = staged || EqualsIgnoreCase(m.attribute, attr);
    if (EqualsIgnoreCase(attr, kSecurityDescriptorAttribute) && !staged &&
        state_->newClass.empty()) {
        // Always fresh, and always in the DACL-only form that a write sends back.
        LdapEntry entry;
        platform::LdapSearchOptions options;
        options.sdFlagsDacl = true;
        LdapStatus status =
            state_->connection->Read(state_->dn, {std::string(attr)}, entry, options);
        if (!status.ok()) return FromLdap(status);
        const LdapValues* values = entry.Find(attr);
        if (!values || values->empty()) {
            return DirStatus::Error(kDirNoValue, std::string(attr) + ": no value");
        }
        return Bytes(values->front().begin(), values->front().end());
    }
    auto value = Get(attr);
    if (!value.ok()) return value.status();
    return Bytes(value->begin(), value->end());
}

void DirObject::Put(std::string_view attr, std::string_view value) {
    if (!state_) return;
    state_->stage.push_back({LdapMod::Op::Replace, std::string(attr), {std::string(value)}});
}

void DirObject::PutBinary(std::string_view attr, Bytes value) {
    if (!state_) return;
    state_->stage.push_back(
        {LdapMod::Op::Replace, std::string(attr), {std::string(value.begin(), value.end())}});
}

void DirObject::PutEx(PutExControl control, std::string_view attr,
                      std::vector<std::string> values) {
    if (!state_) return;
    LdapMod mod{LdapMod::Op::Replace, std::string(attr), std::move(values)};
    switch (control) {
        case PutExControl::Clear:
            // A replace by nothing: removes the attribute, and is no error when it is empty.
            mod.values.clear();
            break;
        case PutExControl::Replace:
            break;
        case PutExControl::Append:
            mod.op = LdapMod::Op::Add;
            break;
        case PutExControl::Delete:
            mod.op = LdapMod::Op::Delete;
            if (mod.values.empty()) return;  // nothing named, nothing to delete
            break;
    }
    state_->stage.push_back(std::move(mod));
}

DirStatus DirObject::SetInfo() {
    if (!state_) return NotBound();
    DirObjectState& s = *state_;
    std::vector<LdapMod> stage = std::move(s.stage);
    s.stage.clear();
    if (!s.newClass.empty()) {
        // An add: the values each attribute ends with, in the order they were first staged.
        std::vector<LdapMod> attributes;
        bool hasClass = false;
        for (const auto& m : stage) {
            bool seen = false;
            for (const auto& a : attributes)
                seen = seen || EqualsIgnoreCase(a.attribute, m.attribute);
            if (seen) continue;
            LdapValues values;
            ApplyStage(stage, m.attribute, values);
            hasClass = hasClass || EqualsIgnoreCase(m.attribute, "objectClass");
            if (!values.empty()) attributes.push_back({LdapMod::Op::Add, m.attribute, values});
        }
        if (!hasClass) {
            attributes.insert(attributes.begin(), {LdapMod::Op::Add, "objectClass", {s.newClass}});
        }
        LdapStatus status = s.connection->Add(s.dn, attributes);
        if (!status.ok()) return FromLdap(status);
        s.newClass.clear();
        Invalidate(s);
        return DirStatus::Ok();
    }
    if (stage.empty()) return DirStatus::Ok();
    bool descriptor = false;
    for (const auto& m : stage) {
        descriptor = descriptor || EqualsIgnoreCase(m.attribute, kSecurityDescriptorAttribute);
    }
    LdapStatus status = s.connection->Modify(s.dn, stage, descriptor);
    Invalidate(s);
    return status.ok() ? DirStatus::Ok() : FromLdap(status);
}

DirStatus DirObject::GetInfo() {
    if (!state_) return NotBound();
    if (!state_->newClass.empty()) {
        return DirStatus::Error(platform::kLdapNoSuchObject, "object not written yet");
    }
    state_->stage.clear();
    Invalidate(*state_);
    return ReadEntry(*state_);
}

// --- Container ---

DirResult<DirObject> DirObject::Create(std::string_view cls, std::string_view relativeName) {
    if (!state_) return NotBound();
    if (cls.empty() || relativeName.find('=') == std::string_view::npos) {
        return DirStatus::Error(kDirBadArgument, "class and relative name needed");
    }
    DirObject created = Related(std::string(relativeName) + "," + state_->dn);
    created.state_->newClass = std::string(cls);
    created.state_->loaded = true;
    return created;
}

DirStatus DirObject::Delete(std::string_view /*cls: the entry's own class decides*/,
                            std::string_view relativeName) {
    if (!state_) return NotBound();
    if (relativeName.find('=') == std::string_view::npos) {
        return DirStatus::Error(kDirBadArgument, "relative name needed");
    }
    LdapStatus status = state_->connection->Delete(std::string(relativeName) + "," + state_->dn);
    return status.ok() ? DirStatus::Ok() : FromLdap(status);
}

DirResult<DirObject> DirObject::MoveHere(std::string_view sourcePath,
                                         std::string_view newRelativeName) {
    if (!state_) return NotBound();
    std::string source = DnFromPath(sourcePath);
    std::string rdn = newRelativeName.empty() ? FirstRdn(source) : std::string(newRelativeName);
    if (source.empty() || rdn.find('=') == std::string::npos) {
        return DirStatus::Error(kDirBadArgument, "source path and relative name needed");
    }
    LdapStatus status = state_->connection->Rename(source, rdn, state_->dn);
    if (!status.ok()) return FromLdap(status);
    return Related(rdn + "," + state_->dn);
}

DirResult<std::vector<DirObject>> DirObject::Children(const std::vector<std::string>& classFilter) {
    if (!state_) return NotBound();
    std::string filter = "(objectClass=*)";
    if (!classFilter.empty()) {
        filter = "(|";
        for (const auto& c : classFilter) filter += "(objectClass=" + c + ")";
        filter += ")";
    }
    std::vector<DirObject> children;
    LdapStatus status = state_->connection->SearchEach(
        state_->dn, platform::LdapScope::OneLevel, filter, {"objectClass"}, [&](LdapEntry& e) {
            DirObject child = Related(e.dn);
            if (const LdapValues* classes = e.Find("objectClass")) {
                child.state_->cache["objectclass"] = *classes;
            }
            children.push_back(std::move(child));
            return true;
        });
    if (!status.ok()) return FromLdap(status);
    return children;
}

// --- Group ---

DirResult<std::vector<DirObject>> DirObject::Members() {
    if (!state_) return NotBound();
    LdapValues dns;
    LdapStatus status = state_->connection->ReadAllValues(state_->dn, "member", dns);
    if (!status.ok()) return FromLdap(status);
    std::vector<DirObject> members;
    members.reserve(dns.size());
    for (auto& dn : dns) {
        DirObject member = Related(dn);
        // The naming attribute is known from the name: callers that read only cn (to rebuild
        // the member's path) need no round trip per member.
        std::string rdn = FirstRdn(dn);
        if (StartsWithIgnoreCase(rdn, "CN=")) member.state_->cache["cn"] = {RdnValue(rdn)};
        members.push_back(std::move(member));
    }
    return members;
}

DirStatus DirObject::Add(std::string_view memberPath) {
    if (!state_) return NotBound();
    std::string member = DnFromPath(memberPath);
    if (member.empty()) return DirStatus::Error(kDirBadArgument, "member path needed");
    LdapStatus status =
        state_->connection->Modify(state_->dn, {{LdapMod::Op::Add, "member", {member}}});
    Invalidate(*state_);
    return status.ok() ? DirStatus::Ok() : FromLdap(status);
}

DirStatus DirObject::Remove(std::string_view memberPath) {
    if (!state_) return NotBound();
    std::string member = DnFromPath(memberPath);
    if (member.empty()) return DirStatus::Error(kDirBadArgument, "member path needed");
    LdapStatus status =
        state_->connection->Modify(state_->dn, {{LdapMod::Op::Delete, "member", {member}}});
    Invalidate(*state_);
    return status.ok() ? DirStatus::Ok() : FromLdap(status);
}

// --- User ---

DirResult<std::vector<DirObject>> DirObject::Groups() {
    if (!state_) return NotBound();
    LdapValues dns;
    LdapStatus status = state_->connection->ReadAllValues(state_->dn, "memberOf", dns);
    if (!status.ok()) return FromLdap(status);
    std::vector<DirObject> groups;
    for (auto& dn : dns) groups.push_back(Related(dn));
    return groups;
}

DirStatus DirObject::SetPassword(std::string_view password) {
    if (!state_) return NotBound();
    if (!state_->connection->IsEncrypted()) {
        // Never send a password over a channel that isn't encrypted.
        return DirStatus::Error(platform::kLdapStrongAuthRequired, "connection not encrypted");
    }
    std::string quoted;
    if (!Utf16Le("\"" + std::string(password) + "\"", quoted)) {
        return DirStatus::Error(kDirBadArgument, "password is not UTF-8 text");
    }
    LdapStatus status = state_->connection->Modify(
        state_->dn, {{LdapMod::Op::Replace, "unicodePwd", {std::move(quoted)}}});
    Invalidate(*state_);
    return status.ok() ? DirStatus::Ok() : FromLdap(status);
}

}  // namespace orin
