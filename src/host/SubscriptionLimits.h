#pragma once

// What one client may hold in subscriptions, so that no client can make the
// host grow without bound. A client is one remote address.
struct SubscriptionLimits
{
    // Room for a page per window and the test and load clients that poll
    // from one address with hundreds of subscriptions.
    int subscriptionsPerClient = 256;
    // Far more than any screen watches at once.
    int topicsPerSubscription = 1000;
    // About a thousand small events, or one insert of 10,000 rows, wait
    // unread before the client is told to refetch.
    int queuedBytesPerSubscription = 64 * 1024;
};
