#include "session/Passages.h"

namespace corvex {

void Passages::Begin(const Passage& passage) {
  underWay_ = passage;
  const unsigned number = ++main_.passage;
  loop_.AbandonWaits([this, run = passage.run, number] {
    for (bool again = true; again;) {
      try {
        again = false;
        run();
      } catch (const WaitAbandoned& wait) {
        // A pause over midnight is abandoned although no other passage has begun. Start this one over.
        if (!wait.overdue || main_.passage != number) throw;
        again = true;
      }
    }
    if (main_.passage == number) underWay_ = {};
  });
}

void Passages::BeginOnLink(EventLoop::Task run) {
  EventLoop::Task interrupted = underWay_.interrupted ? underWay_.interrupted : underWay_.run;
  Begin({.run =
             [this, run = std::move(run), interrupted] {
               if (link_.EnsureLinkOpen()) {
                 run();
               } else if (interrupted) {
                 Begin(interrupted);
               }
             },
         .interrupted = interrupted});
}

}  // namespace corvex
