#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

namespace corvenna {

/// Thrown when a removal meets a list that is already empty. The list has been put back to its one
/// blank element by then; the handler in progress ends.
class EmptyListError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A dynamic array with lower bound 0 that keeps one spare element behind its count: with count n the
/// valid elements are 0..n-1 and element n can be read. Players, TaxiRoutes and the two queues are such
/// lists. The spare element is blank except after a purge that ran past the end (see PurgeWalk).
template <class Element>
class SpareList {
  public:
    static constexpr std::int16_t MaxCount = std::numeric_limits<std::int16_t>::max();

    std::int16_t Count() const { return static_cast<std::int16_t>(elements_.size() - 1); }

    /// The element at a place from 0 to Count(), the spare one included.
    Element& operator[](std::int32_t place) { return elements_[static_cast<std::size_t>(place)]; }
    const Element& operator[](std::int32_t place) const { return elements_[static_cast<std::size_t>(place)]; }

    /// Whether an element, valid or spare, stands at this place.
    bool Holds(std::int32_t place) const {
        return place >= 0 && static_cast<std::size_t>(place) < elements_.size();
    }

    /// The valid elements, without the spare one.
    std::span<Element> Valid() { return {elements_.data(), elements_.size() - 1}; }
    std::span<const Element> Valid() const { return {elements_.data(), elements_.size() - 1}; }

    /// Puts an element last, where the spare one was, and a new blank one behind it.
    /// Throws std::overflow_error when the 16-bit count is full.
    void Add(Element element) {
        if (Count() == MaxCount) throw std::overflow_error("a list has reached its limit of 32767 entries");
        elements_.back() = std::move(element);
        elements_.emplace_back();
    }

    /// Back to one blank element and count 0.
    void Clear() {
        elements_.clear();
        elements_.emplace_back();
        ++revision_;
    }

    /// Blanks every element that isHit accepts, then takes one element out: the last that was hit, or the
    /// first of the list when none was. The list always gets shorter by one. On an empty list it is put
    /// back to count 0 and EmptyListError is thrown with the words given.
    template <class IsHit>
    void RemoveLastHit(IsHit isHit, const char* wordsWhenEmpty) {
        if (Count() == 0) {
            Clear();
            throw EmptyListError(wordsWhenEmpty);
        }
        std::ptrdiff_t place = 0;
        for (std::int32_t i = 0; i < Count(); ++i) {
            if (!isHit((*this)[i])) continue;
            (*this)[i] = Element{};
            place = i;
        }
        elements_.erase(elements_.begin() + place);
        ++revision_;
    }

    /// Offers the elements in order to stays(element) and takes out each one for which it says false.
    ///
    /// The walk has a fixed end, the count as it was, and goes on to the next place after a removal. So an
    /// element that has moved into a freed place is not offered, and for each removal the walk runs one
    /// place further past the last element: it offers the spare one, and then blank ones. Refusing those
    /// shortens the list all the same, which can leave a valid element behind the count, as the spare one.
    template <class Stays>
    void PurgeWalk(Stays stays) {
        const std::size_t end = elements_.size() - 1;
        std::size_t from = 0;  // where the element that now stands at the walk's place was before the walk
        std::size_t kept = 0;
        std::size_t cut = 0;  // elements lost at the end to refusals beyond the array
        for (std::size_t place = 0; place < end; ++place, ++from) {
            if (from >= elements_.size()) {
                Element beyond{};
                if (!stays(beyond)) ++cut;
                continue;
            }
            if (!stays(elements_[from])) {
                ++from;  // the next one moves into this place and is not offered
                if (from >= elements_.size()) continue;
            }
            MoveElement(from, kept++);
        }
        while (from < elements_.size()) MoveElement(from++, kept++);
        elements_.resize(kept - cut);
        ++revision_;
    }

    /// A number that changes whenever elements have been removed or moved, but not when one is added.
    std::uint64_t Revision() const { return revision_; }

    /// To be called by whoever writes an element's key fields from outside, so that indexes notice.
    void MarkChanged() { ++revision_; }

  private:
    void MoveElement(std::size_t from, std::size_t to) {
        if (from != to) elements_[to] = std::move(elements_[from]);
    }

    std::vector<Element> elements_ = std::vector<Element>(1);
    std::uint64_t revision_ = 0;
};

}  // namespace corvenna
