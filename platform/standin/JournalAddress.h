#pragma once

// The path of the socket from which the journal takes records. In a source file of its own, so that a test can link
// another.
const char* JournalAddress();
