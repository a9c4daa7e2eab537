// Synchronisation clients: reference lists that tell every node referring to
// them when they go away.
//
// An SCC_DEFAULT_NSyncClient is an SCC_RefDList whose destructor first calls
// NotifyNodes(0, null), while the list still stands, so that each node can
// drop its reference; then the nodes are let go as by any reference list.
// NSYNC_Client is the class applications derive from; it adds nothing. What
// else an owner sends its nodes is the owner's business. Copies take the
// other list's nodes, as reference lists do.
#ifndef TOVIK_SCC_NSYNC_CLIENT_H
#define TOVIK_SCC_NSYNC_CLIENT_H

#include "scc_refdlist.h"
#include "tovik_export.h"

class TOVIK_API SCC_DEFAULT_NSyncClient : public SCC_RefDList {
 public:
  SCC_DEFAULT_NSyncClient() = default;
  SCC_DEFAULT_NSyncClient(SCC_DEFAULT_NSyncClient &other) : SCC_RefDList(other) {}
  SCC_DEFAULT_NSyncClient &operator=(SCC_DEFAULT_NSyncClient &other) {
    SCC_RefDList::operator=(other);
    return *this;
  }
  // Tells every node code 0 with null data, then lets the nodes go.
  ~SCC_DEFAULT_NSyncClient() override;
};

class TOVIK_API NSYNC_Client : public SCC_DEFAULT_NSyncClient {
 public:
  NSYNC_Client() = default;
  NSYNC_Client(NSYNC_Client &other) : SCC_DEFAULT_NSyncClient(other) {}
  NSYNC_Client &operator=(NSYNC_Client &other) {
    SCC_DEFAULT_NSyncClient::operator=(other);
    return *this;
  }
  ~NSYNC_Client() override;
};

#endif  // TOVIK_SCC_NSYNC_CLIENT_H
