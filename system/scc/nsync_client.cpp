// Synchronisation clients.
#include "scc_nsync_client.h"

SCC_DEFAULT_NSyncClient::~SCC_DEFAULT_NSyncClient() { NotifyNodes(0, nullptr); }

NSYNC_Client::~NSYNC_Client() = default;
