#include "sources/nl80211_source.h"

#include <netlink/genl/ctrl.h>
#include <netlink/genl/genl.h>
#include <netlink/netlink.h>

#include <linux/nl80211.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace orm {

namespace {

// nla_parse wants 4-byte aligned attributes it may write through.
std::vector<quint32> alignedCopy(const QByteArray& bytes)
{
    std::vector<quint32> buffer((size_t(bytes.size()) + 3) / 4 + 1, 0);
    std::memcpy(buffer.data(), bytes.constData(), size_t(bytes.size()));
    return buffer;
}

}  // namespace

bool Nl80211Interface::associated() const
{
    return (iftype == NL80211_IFTYPE_STATION || iftype == NL80211_IFTYPE_P2P_CLIENT) && !ssid.isEmpty();
}

std::optional<Nl80211Interface> parseNl80211Interface(const QByteArray& attributes)
{
    auto buffer = alignedCopy(attributes);
    nla_policy policy[NL80211_ATTR_MAX + 1] = {};
    policy[NL80211_ATTR_IFINDEX].type = NLA_U32;
    policy[NL80211_ATTR_IFTYPE].type = NLA_U32;
    policy[NL80211_ATTR_SSID].type = NLA_UNSPEC;
    policy[NL80211_ATTR_SSID].maxlen = 32;
    nlattr* tb[NL80211_ATTR_MAX + 1] = {};
    if (nla_parse(tb, NL80211_ATTR_MAX, reinterpret_cast<nlattr*>(buffer.data()), int(attributes.size()), policy) < 0)
        return std::nullopt;
    if (!tb[NL80211_ATTR_IFINDEX])
        return std::nullopt;  // a device without a network interface (P2P device, NAN)
    Nl80211Interface out;
    out.ifindex = nla_get_u32(tb[NL80211_ATTR_IFINDEX]);
    if (tb[NL80211_ATTR_IFTYPE])
        out.iftype = nla_get_u32(tb[NL80211_ATTR_IFTYPE]);
    if (tb[NL80211_ATTR_SSID])
        out.ssid = QByteArray(static_cast<const char*>(nla_data(tb[NL80211_ATTR_SSID])), nla_len(tb[NL80211_ATTR_SSID]));
    return out;
}

std::optional<qint32> parseNl80211StationSignal(const QByteArray& attributes)
{
    auto buffer = alignedCopy(attributes);
    nlattr* tb[NL80211_ATTR_MAX + 1] = {};
    if (nla_parse(tb, NL80211_ATTR_MAX, reinterpret_cast<nlattr*>(buffer.data()), int(attributes.size()), nullptr) < 0)
        return std::nullopt;
    if (!tb[NL80211_ATTR_STA_INFO])
        return std::nullopt;
    nla_policy policy[NL80211_STA_INFO_MAX + 1] = {};
    policy[NL80211_STA_INFO_SIGNAL].type = NLA_U8;
    policy[NL80211_STA_INFO_SIGNAL_AVG].type = NLA_U8;
    nlattr* info[NL80211_STA_INFO_MAX + 1] = {};
    if (nla_parse_nested(info, NL80211_STA_INFO_MAX, tb[NL80211_ATTR_STA_INFO], policy) < 0)
        return std::nullopt;
    for (int key : {int(NL80211_STA_INFO_SIGNAL), int(NL80211_STA_INFO_SIGNAL_AVG)}) {
        if (info[key])
            return qint32(static_cast<qint8>(nla_get_u8(info[key])));  // dBm, signed
    }
    return std::nullopt;
}

std::vector<Nl80211Interface> activeInterfaces(std::vector<Nl80211Interface> all)
{
    std::erase_if(all, [](const Nl80211Interface& i) { return !i.associated(); });
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.ifindex < b.ifindex; });
    return all;
}

namespace {

struct SocketFree {
    void operator()(nl_sock* s) const { nl_socket_free(s); }
};
struct MsgFree {
    void operator()(nl_msg* m) const { nlmsg_free(m); }
};
struct CbPut {
    void operator()(nl_cb* c) const { nl_cb_put(c); }
};

// One generic netlink conversation with nl80211.
class Nl80211Session {
public:
    // False with `answer` set when there is nothing to talk to.
    bool open(WifiAnswer& answer)
    {
        sock_.reset(nl_socket_alloc());
        if (!sock_ || genl_connect(sock_.get()) < 0) {
            answer = {WifiAnswer::Failed, QStringLiteral("Cannot open a generic netlink socket")};
            return false;
        }
        // The kernel answers at once; the limit only guards against a
        // kernel that doesn't, so that a tick can never hang here.
        timeval limit{0, 500000};
        setsockopt(nl_socket_get_fd(sock_.get()), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        family_ = genl_ctrl_resolve(sock_.get(), "nl80211");
        if (family_ < 0) {
            answer = {WifiAnswer::NoWifi, {}};  // no cfg80211: no wireless device
            return false;
        }
        return true;
    }

    // Sends one dump request and hands the attributes of each answer to `row`.
    template <typename Row>
    bool dump(quint8 command, quint32 ifindex, Row row, QString& error)
    {
        std::unique_ptr<nl_msg, MsgFree> msg(nlmsg_alloc());
        std::unique_ptr<nl_cb, CbPut> cb(nl_cb_alloc(NL_CB_DEFAULT));
        if (!msg || !cb) {
            error = QStringLiteral("Out of memory");
            return false;
        }
        genlmsg_put(msg.get(), NL_AUTO_PORT, NL_AUTO_SEQ, family_, 0, NLM_F_DUMP, command, 0);
        if (ifindex != 0)
            nla_put_u32(msg.get(), NL80211_ATTR_IFINDEX, ifindex);

        struct State {
            Row* row;
            bool done = false;
            int error = 0;
        } state{&row};
        nl_cb_set(cb.get(), NL_CB_VALID, NL_CB_CUSTOM, [](nl_msg* m, void* arg) -> int {
            auto* s = static_cast<State*>(arg);
            auto* gnlh = static_cast<genlmsghdr*>(nlmsg_data(nlmsg_hdr(m)));
            (*s->row)(QByteArray(static_cast<const char*>(static_cast<const void*>(genlmsg_attrdata(gnlh, 0))),
                                 genlmsg_attrlen(gnlh, 0)));
            return NL_OK;
        }, &state);
        nl_cb_set(cb.get(), NL_CB_FINISH, NL_CB_CUSTOM, [](nl_msg*, void* arg) -> int {
            static_cast<State*>(arg)->done = true;
            return NL_STOP;
        }, &state);
        nl_cb_set(cb.get(), NL_CB_ACK, NL_CB_CUSTOM, [](nl_msg*, void* arg) -> int {
            static_cast<State*>(arg)->done = true;
            return NL_STOP;
        }, &state);
        nl_cb_err(cb.get(), NL_CB_CUSTOM, [](sockaddr_nl*, nlmsgerr* e, void* arg) -> int {
            auto* s = static_cast<State*>(arg);
            s->error = e->error;
            s->done = true;
            return NL_STOP;
        }, &state);

        if (nl_send_auto(sock_.get(), msg.get()) < 0) {
            error = QStringLiteral("Cannot send to nl80211");
            return false;
        }
        while (!state.done) {
            const int rc = nl_recvmsgs(sock_.get(), cb.get());
            if (rc < 0) {
                error = QString::fromLocal8Bit(nl_geterror(rc));
                return false;
            }
        }
        if (state.error < 0) {
            error = QString::fromLocal8Bit(std::strerror(-state.error));
            return false;
        }
        return true;
    }

    // The associated interfaces, or false with `answer` set.
    bool interfaces(std::vector<Nl80211Interface>& active, WifiAnswer& answer)
    {
        std::vector<Nl80211Interface> all;
        QString error;
        const bool ok = dump(NL80211_CMD_GET_INTERFACE, 0, [&all](const QByteArray& attrs) {
            if (auto i = parseNl80211Interface(attrs))
                all.push_back(*i);
        }, error);
        if (!ok) {
            answer = {WifiAnswer::Failed, error};
            return false;
        }
        if (all.empty()) {
            answer = {WifiAnswer::NoWifi, {}};
            return false;
        }
        active = activeInterfaces(std::move(all));
        return true;
    }

    // The signal of the interface's access point; the first station with one.
    std::optional<qint32> signal(quint32 ifindex)
    {
        std::optional<qint32> found;
        QString error;
        dump(NL80211_CMD_GET_STATION, ifindex, [&found](const QByteArray& attrs) {
            if (!found)
                found = parseNl80211StationSignal(attrs);
        }, error);
        return found;
    }

private:
    std::unique_ptr<nl_sock, SocketFree> sock_;
    int family_ = -1;
};

}  // namespace

WifiAnswer Nl80211Source::activeSsids(std::vector<QByteArray>& ssids)
{
    WifiAnswer answer{WifiAnswer::Ok, {}};
    Nl80211Session session;
    std::vector<Nl80211Interface> active;
    if (!session.open(answer) || !session.interfaces(active, answer))
        return answer;
    ssids.clear();
    for (const auto& i : active)
        ssids.push_back(i.ssid);
    return answer;
}

WifiAnswer Nl80211Source::activeSignals(std::vector<qint32>& dbm)
{
    WifiAnswer answer{WifiAnswer::Ok, {}};
    Nl80211Session session;
    std::vector<Nl80211Interface> active;
    if (!session.open(answer) || !session.interfaces(active, answer))
        return answer;
    dbm.clear();
    // A row for every interface, so that positions keep matching the names;
    // one without a reading counts as the bottom of the scale.
    for (const auto& i : active)
        dbm.push_back(session.signal(i.ifindex).value_or(-100));
    return answer;
}

}  // namespace orm
