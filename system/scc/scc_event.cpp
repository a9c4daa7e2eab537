#include "scc_event.h"

// The int instances are compiled here once; applications use these.
template class SCC_EventNode<int>;
template class SCC_Event<int>;
template class SCC_EventIterator<int>;
template class SCC_EventHook<int>;

static_assert(sizeof(SCC_EventNode<int>) == sizeof(void *) * 5, "vptr, enabled, owner, prev, next");

// Out of line so that the notifier's virtual table has one home.
SCC_Notifier::~SCC_Notifier() = default;

std::int32_t SCC_Notifier::GetMassNotificationTreshold() { return 10; }
