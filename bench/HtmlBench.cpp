#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageText.h"
#include "browserdata/RichText.h"
#include "html/Document.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <malloc.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// tabwright_html_bench PAGE...
///
/// The conversion of HTML over real pages: each page by itself, then all of them repeated up to 50 MB. Times
/// are the processor's own, medians, so that a busy machine disturbs little.
/// Memory is the peak of a process that converts once, above one that only holds the page.
namespace {

using namespace tabwright;

double processorMilliseconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(const std::function<void()>& work) {
  std::vector<double> times;
  double total = 0;
  do {
    const double begin = processorMilliseconds();
    work();
    times.push_back(processorMilliseconds() - begin);
    total += times.back();
  } while (times.size() < 3 || (total < 500 && times.size() < 200));
  std::ranges::nth_element(times, times.begin() + std::ssize(times) / 2);
  return times[times.size() / 2];
}

std::size_t lengths = 0; // keeps the results from being optimised away

void parse(const std::string& page) {
  const html::Document document = html::Document::parse(page);
  lengths += document.root().name().size();
}

void convert(const std::string& page) {
  lengths += browserdata::HTMLToMarkdown{page}.convert().size();
}

void toText(const std::string& page) {
  lengths += browserdata::PageText{.html = page, .base = "https://x.test/"}.convert().text.size();
}

void toRichText(const std::string& page) {
  lengths += browserdata::richText(html::Document::parse(page)).size();
}

long peakOfChild(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  rusage usage{};
  int status = 0;
  ::wait4(child, &status, 0, &usage);
  return usage.ru_maxrss * 1024;
}

void measure(const std::string& name, const std::string& page) {
  const double bytes = static_cast<double>(page.size());
  const double tree = median([&] { parse(page); });
  const double markdown = median([&] { convert(page); });
  const double text = median([&] { toText(page); });
  const double richText = median([&] { toRichText(page); });
  const long idle = peakOfChild([] {});
  const double memory = static_cast<double>(peakOfChild([&] { convert(page); }) - idle) / bytes;
  std::printf("%-28s %10zu %9.1f %9.1f %9.1f %9.1f %9.1f\n", name.c_str(), page.size(), bytes / tree / 1e3,
              bytes / markdown / 1e3, bytes / text / 1e3, bytes / richText / 1e3, memory);
  std::fflush(stdout);
}

} // namespace

int main(int count, char** names) {
  // As the program has it: what a conversion needed is kept for the next one.
  ::mallopt(M_TRIM_THRESHOLD, 16 << 20);
  ::mallopt(M_MMAP_THRESHOLD, 4 << 20);
  std::printf("%-28s %10s %9s %9s %9s %9s %9s\n", "page", "bytes", "tree", "Markdown", "GFM", "RTF", "memory");
  std::printf("%-28s %10s %9s %9s %9s %9s %9s\n", "", "", "MB/s", "MB/s", "MB/s", "MB/s", "B/byte");
  std::string all;
  for (int index = 1; index < count; ++index) {
    std::ifstream file(names[index], std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::string name = names[index];
    measure(name.substr(name.rfind('/') + 1), page);
    all += page;
  }
  for (const std::size_t size : {10'000UL, 100'000UL, 1'000'000UL, 10'000'000UL, 50'000'000UL}) {
    std::string page;
    while (!all.empty() && page.size() < size)
      page += all.substr(0, size - page.size());
    measure("all, to " + std::to_string(size), page);
  }
  std::printf("%zu bytes written\n", lengths);
}
