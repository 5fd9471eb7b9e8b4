#include "links/link_batch.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace zel::host {
namespace {

constexpr std::size_t kRowsTogether = 32;
constexpr std::size_t kBytesTogether = 256U << 10U;
constexpr std::size_t kBatchesAhead = 4;  // of each thread
constexpr std::chrono::milliseconds kBetweenLooks{100};

struct Link {
  Row row;
  LinkInput input;
  LinkFigures figures;
  std::string text;
};

// Some rows on their way through.
struct Portion {
  std::vector<Link> links;
  std::exception_ptr failure;
  bool ready = false;
};

// Computes portions in several threads.
class Workers {
 public:
  Workers(const LinkWriter& writer, const BatchJob& job) : writer_(writer), job_(job) {
    threads_.reserve(job.jobs);
    try {
      for (std::size_t i = 0; i < std::max<std::size_t>(job.jobs, 1); ++i)
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      // Where the system gives no more of them, those that there are do the work.
      if (threads_.empty()) throw;
    }
  }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  ~Workers() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
      waiting_.clear();
    }
    comes_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  void add(std::shared_ptr<Portion> portion) {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(std::move(portion));
    }
    comes_.notify_one();
  }

  // Whether it is ready before long.
  bool wait(const Portion& portion) {
    std::unique_lock lock(mutex_);
    return done_.wait_for(lock, kBetweenLooks, [&] { return portion.ready; });
  }
  bool isReady(const Portion& portion) {
    const std::lock_guard lock(mutex_);
    return portion.ready;
  }

 private:
  void work() {
    for (;;) {
      std::unique_lock lock(mutex_);
      comes_.wait(lock, [this] { return ended_ || !waiting_.empty(); });
      if (ended_) return;
      const std::shared_ptr<Portion> portion = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      try {
        for (Link& link : portion->links) {
          link.figures = linkFigures(link.input, job_.source, job_.figures);
          writer_.row(link.text, link.row, link.input, link.figures);
          link.row = {};
        }
      } catch (...) {
        portion->failure = std::current_exception();
      }
      lock.lock();
      portion->ready = true;
      lock.unlock();
      done_.notify_all();
    }
  }

  const LinkWriter& writer_;
  const BatchJob& job_;
  std::mutex mutex_;
  std::condition_variable comes_, done_;
  std::deque<std::shared_ptr<Portion>> waiting_;
  bool ended_ = false;
  std::vector<std::thread> threads_;
};

class Batch {
 public:
  Batch(LinkList& list, const LinkWriter& writer, const BatchJob& job, LinkSink& sink, LinkTotals& totals,
        const BatchHooks& hooks)
      : list_(list),
        writer_(writer),
        job_(job),
        sink_(sink),
        totals_(totals),
        hooks_(hooks),
        workers_(writer, job) {}

  bool run() {
    // A producer may wait for what its links have become before it sends more.
    list_.whileWaiting([this] {
      takeReady();
      return !advance();
    });
    const bool whole = work();
    list_.whileWaiting(nullptr);
    return whole;
  }

 private:
  bool work() {
    Row row;
    for (std::size_t i = 0; i < job_.done; ++i)
      if (!list_.next(row)) break;
    while (going_ && readPortion()) {
      while (going_ && underWay_.size() >= kBatchesAhead * std::max<std::size_t>(job_.jobs, 1)) takeOldest();
      takeReady();
    }
    // Asked to end, what is not begun is dropped, and what is ready is kept.
    while (!underWay_.empty() && (going_ || workers_.isReady(*underWay_.front()))) takeOldest();
    if (!going_) sink_.checkpoint(totals_.text());
    return going_;
  }

  bool advance() {
    if (going_ && hooks_.advance && !hooks_.advance(totals_.links)) going_ = false;
    return going_;
  }

  bool readPortion() {
    auto portion = std::make_shared<Portion>();
    std::size_t bytes = 0;
    while (portion->links.size() < kRowsTogether && bytes < kBytesTogether &&
           (portion->links.empty() || list_.atHand())) {
      Link link;
      if (!list_.next(link.row)) break;
      bytes += link.row.text.size();
      link.input = linkInput(link.row, list_.layout());
      if (job_.toMap && link.input.placed) {
        link.input.mapFrom = job_.toMap(link.input.from);
        link.input.mapTo = job_.toMap(link.input.to);
      }
      portion->links.push_back(std::move(link));
    }
    if (!advance() || portion->links.empty()) return false;
    underWay_.push_back(portion);
    workers_.add(std::move(portion));
    return true;
  }

  void takeReady() {
    while (going_ && !underWay_.empty() && workers_.isReady(*underWay_.front())) takeOldest();
  }

  void takeOldest() {
    const std::shared_ptr<Portion> portion = underWay_.front();
    while (!workers_.wait(*portion))
      if (!advance()) return;
    underWay_.pop_front();
    if (portion->failure) std::rethrow_exception(portion->failure);
    std::string text;
    for (const Link& link : portion->links) {
      if (totals_.links > 0) text += writer_.separator();
      text += link.text;
      totals_.add(link.input, link.figures);
      if (!link.figures.error.empty() && hooks_.rowError)
        hooks_.rowError(link.input.line, link.figures.error);
    }
    sink_.write(text);
    if (sink_.checkpointIsDue()) sink_.checkpoint(totals_.text());
    advance();
  }

  LinkList& list_;
  const LinkWriter& writer_;
  const BatchJob& job_;
  LinkSink& sink_;
  LinkTotals& totals_;
  const BatchHooks& hooks_;
  bool going_ = true;
  std::deque<std::shared_ptr<Portion>> underWay_;
  Workers workers_;  // ends before what it works on
};

}  // namespace

LinkList::LinkList(InputBytes& input, const LayoutOptions& options, std::function<bool()> stop)
    : input_(input), stop_(std::move(stop)), reader_([this](std::string& text) {
        bytes_.clear();
        if (finished_) return false;
        if (input_.read(bytes_, stop_)) {
          decoder_.take(bytes_, text);
        } else {
          decoder_.finish(text);
          finished_ = true;
        }
        if (!decoder_.problem().empty())
          throw LinkFileError("cannot read " + input_.title() + ": " + decoder_.problem());
        return true;
      }) {
  LayoutResult result = readLayout(reader_, options, ahead_);
  if (!result.layout) throw LinkFileError(input_.title() + ": " + result.error);
  layout_ = std::move(*result.layout);
}

bool LinkList::next(Row& row) {
  if (ahead_.empty()) return reader_.next(row);
  row = std::move(ahead_.front());
  ahead_.pop_front();
  return true;
}

std::uint64_t LinkList::position() const {
  return input_.position() - std::min<std::uint64_t>(input_.position(), reader_.unread());
}

std::vector<std::string> LinkList::notes() const {
  std::vector<std::string> notes = layout_.notes;
  if (const std::string note = decoder_.note(); !note.empty()) notes.push_back(note);
  if (reader_.comments() > 0)
    notes.push_back(
        std::to_string(reader_.comments()) +
        (reader_.comments() == 1 ? " line that begins with \"#\" was" : " lines that begin with \"#\" were") +
        " passed over");
  return notes;
}

bool runLinkBatch(LinkList& list, const LinkWriter& writer, const BatchJob& job, LinkSink& sink,
                  LinkTotals& totals, const BatchHooks& hooks) {
  if (!job.begun) sink.write(writer.head());
  const bool whole = Batch(list, writer, job, sink, totals, hooks).run();
  if (whole) sink.write(writer.tail(totals));
  return whole;
}

}  // namespace zel::host
