#pragma once
// Binding the domain once for the life of the process: the two connection methods of the
// login dialog. Both fill gSession (Connection, RootObject, RootLdapPath) and set
// gSession.Connected; a failure shows the "ﾄﾞﾒｲﾝ接続" box through TheOperator() and leaves no
// connection behind. The box's text is fixed; its detail (and the trace) says why: the server's
// result and its own words, "certificate not trusted: ... (use --ca-file or LDAPTLS_CACERT)", "no
// answer from host:port within N s", or "no TLS at host:port ..." where a simple bind would need
// it.
//
// local:  the logged-on user's Kerberos credentials (SASL GSSAPI), against the domain's DNS
//         name. The name leads to a DC; the bind goes to that DC's own host name, the name its
//         Kerberos service principal carries.
// remote: the named DC, with the user name and password, never a password in clear. How, by
//         gSession.RemoteAuthentication:
//         - TLS: a simple bind over LDAPS (port 636), or over StartTLS on port 389 when
//           gSession.UseStartTls is set. A bare user name is sent as "name@<DomainDNSName>";
//           "DOMAIN\name", "name@realm" and distinguished names go as they are.
//         - Kerberos: a ticket obtained from the password (platform/Kerberos.h: the realm's KDC,
//           or the DC itself where none is configured or published), then a SASL GSSAPI bind
//           on port 389 whose security layer signs and seals everything after it. The user name
//           maps to a principal (PrincipalForUser): "name" and "DOMAIN\name" -> name@REALM, a
//           UPN as it is; a distinguished name has none and fails.
//         - Automatic (the default): TLS; Kerberos when the TLS channel can't be made, the DC
//           answers on port 389 and it offers no TLS at all (the handshake fails even with the
//           certificate unchecked). A certificate that fails the check is not such a case: the
//           connection fails, as an interception would look the same, and the operator decides
//           (a CA file, or Kerberos chosen explicitly). Kerberos itself needs no certificate:
//           the KDC vouches for the DC by its service ticket, and the DC proves itself in the
//           mutual authentication of the bind.
//
// There is no WinNT namespace over LDAP. What its steps proved is checked on the domain itself:
// - "WinNT://<NetBIOS>" bound: the NetBIOS name given is the domain's, i.e. the crossRef of
//   the domain under CN=Partitions of the configuration naming context holds it as nETBIOSName
//   (case ignored). Failure: "NetBIOS名のﾄﾞﾒｲﾝ認証が失敗。".
// - local, the first "Group" of the WinNT container: a search for one group in the domain.
//   Failure: the same detail.
// - remote, the "WinNT:" namespace object: the server's root entry names its configuration
//   naming context. Failure: "WinNTﾌﾟﾛﾊﾞｲﾀﾞに接続できません。".
// - remote, the "LDAP:" namespace object: a connection to the DC's URI can be prepared (the name
//   makes a usable URI). Failure: "LDAPﾌﾟﾛﾊﾞｲﾀﾞに接続できません。".

namespace orin {

void ConnectLocal();
void ConnectRemote();

}  // namespace orin
