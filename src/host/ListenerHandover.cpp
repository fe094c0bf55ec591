#include "ListenerHandover.h"

#include <microhttpd.h>

#include <cerrno>
#include <fcntl.h>
#include <linux/filter.h>
#include <sys/socket.h>
#include <unistd.h>

int ListenerHandover::close(int listenSocket, MHD_Daemon* daemon)
{
    // Every segment that reaches the socket from now on is dropped: a new
    // handshake cannot complete between the last accept and the close, and
    // the client's retry finds the port closed and is refused.
    sock_filter dropAll[] = {BPF_STMT(BPF_RET | BPF_K, 0)};
    const sock_fprog program{1, dropAll};
    ::setsockopt(listenSocket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof(program));
    ::fcntl(listenSocket, F_SETFL, ::fcntl(listenSocket, F_GETFL) | O_NONBLOCK);
    int handed = 0;
    for (;;) {
        sockaddr_storage peer{};
        socklen_t length = sizeof(peer);
        const int client = ::accept4(listenSocket, reinterpret_cast<sockaddr*>(&peer), &length, SOCK_CLOEXEC);
        if (client < 0) {
            if (errno == EINTR || errno == ECONNABORTED)
                continue;
            break;
        }
        // The daemon owns the socket from here, and closes it if it cannot take it.
        if (MHD_add_connection(daemon, client, reinterpret_cast<sockaddr*>(&peer), length) == MHD_YES)
            ++handed;
    }
    ::close(listenSocket);
    return handed;
}
