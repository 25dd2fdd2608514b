#pragma once
// Requests from outside to end the program: a signal, the console, or the end of the session.
//
// POSIX: SIGHUP asks a program to end if it comes from the terminal that is closed, else to read its settings again.

#include <functional>

namespace tarvin {

// Keeps every later request until WaitForStopRequest. Call it before the first thread starts.
void PrepareStopRequests();

// Like PrepareStopRequests, for a program whose only requests are calls of EndStopRequests. Windows tells services of
// each user who logs off, and PrepareStopRequests would take that for a request.
void PrepareStopRequestsOfManager();

// Blocks until there is a request. Calls `reload` for each request to read the settings again; without `reload` such a
// request ends the wait too. One thread.
void WaitForStopRequest(const std::function<void()>& reload = {});

// Requests to read the settings again. Any thread.
void PostReloadRequest();

// Ends that wait, for a program that ends by itself. Any thread.
void EndStopRequests();

}
