#pragma once

#include <tarn/EditControl.h>
#include <tarn/PropertyPage.h>

/// What the pages fill in.
struct Order {
    tarn::BasicString<wchar_t> name;
    int tickets = 0;
};

/// A page of the wizard: sets the wizard's buttons when it appears, and can show why it does not go on.
class OrderPage : public tarn::PropertyPage {
public:
    /// `title` is a string resource; the line below it is the next one.
    OrderPage(unsigned short resource, unsigned short title, unsigned long buttons, Order& order);
    int onActivate() override;

protected:
    /// The answer to Next: goes on without a hint, otherwise shows it and stays at the field `id`.
    int answer(int id, const wchar_t* hint) const;

    Order& order_;

private:
    unsigned long buttons_;
};

class NamePage : public OrderPage {
public:
    explicit NamePage(Order& order);
    int onNext() override;
};

class TicketsPage : public OrderPage {
public:
    explicit TicketsPage(Order& order);
    int onNext() override;
};

class SummaryPage : public OrderPage {
public:
    explicit SummaryPage(Order& order);
    int onActivate() override;
    int onBack() override;
    LRESULT onNotify(const NMHDR& header) override;

private:
    int wanted_ = 0; // The page that a link leads to.
};
