#include "cli/CliOptions.h"

#include <map>
#include <string_view>

#include "platform/Strings.h"

namespace orin::cli {
namespace {

const std::map<std::string, ObjectKind> kKinds = {
    {"ou", ObjectKind::OU},
    {"group", ObjectKind::Group},
    {"user", ObjectKind::User},
    {"computer", ObjectKind::Computer},
    {"share", ObjectKind::SharedFolder},
    {"gpo", ObjectKind::GpoLink},
};
const std::map<std::string, OperationKind> kOperations = {
    {"add", OperationKind::Add}, {"del", OperationKind::Del}, {"mov", OperationKind::Mov},
    {"mdf", OperationKind::Mdf}, {"exp", OperationKind::Exp},
};
const std::map<std::string, RunMode> kModes = {
    {"production", RunMode::Production},
    {"imitate", RunMode::Imitate},
    {"compare", RunMode::Compare},
};

// The options of a subcommand as given: "--name value" or "--name=value"; flags have no value.
class OptionList {
  public:
    OptionList(const std::vector<std::string>& args, size_t first,
               const std::vector<std::string_view>& valued,
               const std::vector<std::string_view>& flags, std::string& error) {
        for (size_t i = first; i < args.size() && error.empty(); ++i) {
            std::string name = args[i];
            std::optional<std::string> value;
            if (const size_t eq = name.find('=');
                name.starts_with("--") && eq != std::string::npos) {
                value = name.substr(eq + 1);
                name.resize(eq);
            }
            if (name == "--password") {
                error =
                    "ﾊﾟｽﾜｰﾄﾞはｺﾏﾝﾄﾞ行では受け付けません。--password-file か環境変数 "
                    "ORIN_PASSWORD を使ってください。";
            } else if (Contains(flags, name)) {
                if (value) error = "ｵﾌﾟｼｮﾝ " + name + " は値を取りません。";
                flags_.push_back(name);
            } else if (Contains(valued, name)) {
                if (!value) {
                    if (i + 1 >= args.size()) {
                        error = "ｵﾌﾟｼｮﾝ " + name + " に値がありません。";
                        break;
                    }
                    value = args[++i];
                }
                values_[name] = *value;
            } else {
                error = "不明なｵﾌﾟｼｮﾝです: " + name;
            }
        }
    }

    std::optional<std::string> Value(const std::string& name) const {
        auto it = values_.find(name);
        if (it == values_.end()) return std::nullopt;
        return it->second;
    }
    bool Flag(std::string_view name) const { return Contains(flags_, name); }

  private:
    template <typename List>
    static bool Contains(const List& list, std::string_view name) {
        for (const auto& entry : list)
            if (entry == name) return true;
        return false;
    }

    std::map<std::string, std::string> values_;
    std::vector<std::string> flags_;
};

// Looks `name`'s value up in `table`; false (with the error) when it is missing or unknown.
template <typename T>
bool Choose(const OptionList& options, const std::string& name,
            const std::map<std::string, T>& table, T& out, std::string& error) {
    const std::optional<std::string> value = options.Value(name);
    if (!value) {
        error = name + " を指定してください。";
        return false;
    }
    auto it = table.find(ToLowerAscii(*value));
    if (it == table.end()) {
        error = name + " の値が正しくありません: " + *value;
        return false;
    }
    out = it->second;
    return true;
}

std::optional<Command> ParseRun(const std::vector<std::string>& args, std::string& error) {
    OptionList options(args, 1,
                       {"--kind", "--op", "--mode", "--csv", "--dns", "--netbios", "--method",
                        "--server", "--user", "--password-file", "--ca-file", "--auth"},
                       {"--trust-test-dc", "--yes"}, error);
    if (!error.empty()) return std::nullopt;
    RunOptions run;
    if (!Choose(options, "--kind", kKinds, run.kind, error) ||
        !Choose(options, "--op", kOperations, run.op, error) ||
        !Choose(options, "--mode", kModes, run.mode, error)) {
        return std::nullopt;
    }
    if (run.kind == ObjectKind::GpoLink && run.op != OperationKind::Exp) {
        error = "--kind gpo には --op exp しか使えません。";
        return std::nullopt;
    }
    if (run.op == OperationKind::Exp && run.mode == RunMode::Imitate) {
        error = "--op exp は --mode imitate と組み合わせられません。";
        return std::nullopt;
    }
    const std::optional<std::string> csv = options.Value("--csv");
    if (!csv) {
        error = "--csv を指定してください。";
        return std::nullopt;
    }
    run.csv = *csv;
    run.dns = options.Value("--dns");
    run.netbios = options.Value("--netbios");
    run.method = options.Value("--method");
    if (run.method) {
        *run.method = ToLowerAscii(*run.method);
        if (*run.method != "local" && *run.method != "remote") {
            error = "--method の値が正しくありません: " + *options.Value("--method");
            return std::nullopt;
        }
    }
    run.server = options.Value("--server");
    run.user = options.Value("--user");
    run.passwordFile = options.Value("--password-file");
    run.caFile = options.Value("--ca-file");
    run.auth = options.Value("--auth");
    if (run.auth) {
        *run.auth = ToLowerAscii(*run.auth);
        if (*run.auth != "auto" && *run.auth != "tls" && *run.auth != "kerberos") {
            error = "--auth の値が正しくありません: " + *options.Value("--auth");
            return std::nullopt;
        }
    }
    run.trustTestDc = options.Flag("--trust-test-dc");
    if (run.caFile && run.trustTestDc) {
        error = "--ca-file と --trust-test-dc は同時に指定できません。";
        return std::nullopt;
    }
    run.yes = options.Flag("--yes");
    return run;
}

std::optional<Command> ParseTemplate(const std::vector<std::string>& args, std::string& error) {
    OptionList options(args, 1, {"--kind", "--op", "--out"}, {"--yes"}, error);
    if (!error.empty()) return std::nullopt;
    TemplateOptions tmpl;
    if (!Choose(options, "--kind", kKinds, tmpl.kind, error) ||
        !Choose(options, "--op", kOperations, tmpl.op, error)) {
        return std::nullopt;
    }
    if (tmpl.kind == ObjectKind::GpoLink || tmpl.op == OperationKind::Exp) {
        error = "ﾃﾝﾌﾟﾚｰﾄは ou, group, user, computer, share の add, del, mov, mdf だけです。";
        return std::nullopt;
    }
    const std::optional<std::string> out = options.Value("--out");
    if (!out) {
        error = "--out を指定してください。";
        return std::nullopt;
    }
    tmpl.out = *out;
    tmpl.yes = options.Flag("--yes");
    return tmpl;
}

}  // namespace

std::optional<Command> ParseCommandLine(const std::vector<std::string>& args, std::string& error) {
    error.clear();
    if (args.empty()) {
        error = "ｻﾌﾞｺﾏﾝﾄﾞを指定してください。";
        return std::nullopt;
    }
    const std::string& sub = args[0];
    if (sub == "-h" || sub == "--help" || sub == "help") return HelpRequest{};
    if (sub == "run") return ParseRun(args, error);
    if (sub == "template") return ParseTemplate(args, error);
    error = "不明なｻﾌﾞｺﾏﾝﾄﾞです: " + sub;
    return std::nullopt;
}

const char* UsageText() {
    return "使い方:\n"
           "  orin-cli run --kind ou|group|user|computer|share|gpo --op add|del|mov|mdf|exp\n"
           "               --mode production|imitate|compare --csv FILE\n"
           "               [--dns DNSNAME] [--netbios NAME] [--method local|remote]\n"
           "               [--server DC] [--user NAME] [--password-file FILE]\n"
           "               [--ca-file FILE | --trust-test-dc] [--auth auto|tls|kerberos]\n"
           "               [--yes]\n"
           "  orin-cli template --kind ou|group|user|computer|share --op add|del|mov|mdf\n"
           "               --out FILE [--yes]\n"
           "\n"
           "省略した値は Orin.ini の値を使います (ORIN_HOME のﾌｫﾙﾀﾞ、なければ実行ﾌｧｲﾙのﾌｫﾙﾀﾞ)。\n"
           "ﾊﾟｽﾜｰﾄﾞは --password-file、環境変数 ORIN_PASSWORD、端末での入力の順に探します。\n"
           "--yes は確認の質問すべてに｢はい｣と答えます。端末がなければ｢いいえ｣と答えます。\n"
           "--auth はﾘﾓｰﾄ接続の認証方式です: tls は LDAPS (または StartTLS) での認証だけ、\n"
           "kerberos はﾊﾟｽﾜｰﾄﾞから得た Kerberos ﾁｹｯﾄでの暗号化された認証だけ、auto (既定) は\n"
           "tls を使い、DC が TLS を提供しないときだけ kerberos を使います。\n"
           "\n"
           "終了ｺｰﾄﾞ: 0 全件成功(一致)  1 失敗あり  2 警告または相違あり(失敗なし)\n"
           "          3 処理開始前に中止  4 ﾄﾞﾒｲﾝ接続失敗  5 SIGTERMまたはSIGHUPで中断\n"
           "          64 ｺﾏﾝﾄﾞ行の誤り  130 Ctrl-Cで中断\n"
           "Ctrl-C、SIGTERM、SIGHUP はｷｬﾝｾﾙﾎﾞﾀﾝと同じく処理中の行の後で止め、集計を書きます。\n";
}

}  // namespace orin::cli
