#pragma once

struct MHD_Daemon;

// The end of a listening socket that the daemon gave back when it stopped
// accepting: from then on new connections are refused, and the ones the
// kernel had already accepted for the host (waiting in the backlog) are
// handed to the daemon to be answered, rather than reset with the socket.
class ListenerHandover
{
public:
    // Closes listenSocket; answers how many waiting connections went to daemon.
    static int close(int listenSocket, MHD_Daemon* daemon);
};
