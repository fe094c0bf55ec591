#include "ListenerHandover.h"

#include <microhttpd.h>

#include <cerrno>
#include <fcntl.h>
#include <linux/filter.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// How long handshakes under way when the socket stops taking new ones get to
// complete, so that they are served too.
constexpr useconds_t kHandshakeGraceUs = 20000;

int handOver(int listenSocket, MHD_Daemon* daemon)
{
    int handed = 0;
    for (;;) {
        sockaddr_storage peer{};
        socklen_t length = sizeof(peer);
        const int client = ::accept4(listenSocket, reinterpret_cast<sockaddr*>(&peer), &length, SOCK_CLOEXEC);
        if (client < 0) {
            if (errno == EINTR || errno == ECONNABORTED)
                continue;
            return handed;
        }
        // The daemon owns the socket from here, and closes it if it cannot take it.
        if (MHD_add_connection(daemon, client, reinterpret_cast<sockaddr*>(&peer), length) == MHD_YES)
            ++handed;
    }
}

} // namespace

int ListenerHandover::close(int listenSocket, MHD_Daemon* daemon)
{
    // From now on a segment that opens a connection (SYN without ACK) is
    // dropped: its retry finds the port closed and is refused. Handshakes
    // already under way still complete and are handed over with the rest.
    // The filter sees the TCP header at offset 0; byte 13 holds the flags.
    sock_filter refuseNew[] = {
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, 13),
        BPF_STMT(BPF_ALU | BPF_AND | BPF_K, 0x12),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0x02, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, 0),
        BPF_STMT(BPF_RET | BPF_K, 0xffffffff),
    };
    const sock_fprog program{sizeof(refuseNew) / sizeof(refuseNew[0]), refuseNew};
    ::setsockopt(listenSocket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof(program));
    ::fcntl(listenSocket, F_SETFL, ::fcntl(listenSocket, F_GETFL) | O_NONBLOCK);
    int handed = handOver(listenSocket, daemon);
    ::usleep(kHandshakeGraceUs);
    handed += handOver(listenSocket, daemon);
    ::close(listenSocket);
    return handed;
}
