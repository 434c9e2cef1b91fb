#include "platform/LibraryVersions.h"

#include <lber.h>
#include <ldap.h>
#include <libsmbclient.h>
#include <sasl/sasl.h>
#include <sqlite3.h>

namespace orin::platform {

namespace {

std::string LdapVersion(std::string& vendor) {
    LDAPAPIInfo info{};
    info.ldapai_info_version = LDAP_API_INFO_VERSION;
    if (ldap_get_option(nullptr, LDAP_OPT_API_INFO, &info) != LDAP_OPT_SUCCESS) return "?";
    if (info.ldapai_vendor_name) vendor = info.ldapai_vendor_name;
    // OpenLDAP writes its version as major * 10000 + minor * 100 + patch.
    const int v = info.ldapai_vendor_version;
    std::string text = std::to_string(v / 10000) + "." + std::to_string(v / 100 % 100) + "." +
                       std::to_string(v % 100);
    ldap_memfree(info.ldapai_vendor_name);
    ber_memvfree(reinterpret_cast<void**>(info.ldapai_extensions));
    return text;
}

std::string SaslVersion() {
    const char* implementation = nullptr;
    const char* version = nullptr;
    sasl_version_info(&implementation, &version, nullptr, nullptr, nullptr, nullptr);
    return version ? version : "?";
}

}  // namespace

std::vector<std::pair<std::string, std::string>> LibraryVersions() {
    std::string vendor = "LDAP";
    std::string ldap = LdapVersion(vendor);
    const char* smb = smbc_version();
    return {
        {vendor, ldap},
        {"Cyrus SASL", SaslVersion()},
        {"libsmbclient", smb ? smb : "?"},
        {"SQLite", sqlite3_libversion()},
    };
}

}  // namespace orin::platform
