#pragma once

// The process acts as a user without privileges for as long as the object lives, also when root runs the tests:
// file permissions count for it.
class OrdinaryUser final
{
public:
    // Throws std::runtime_error when root cannot become another user.
    OrdinaryUser();
    ~OrdinaryUser();

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    const bool m_isRoot;
};
