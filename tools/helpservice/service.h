#pragma once

#include "addressbook.h"

#include <httplib.h>

#include <QString>

/// Serves the files of a web site, and the addresses of its topics at "/address".
class Service
{
public:
    /// `book` must outlive the service.
    Service(const AddressBook& book, const QString& siteFolder);

    /// Takes the port, or any that is free for 0. Returns the port; 0 when that fails.
    int Bind(const std::string& host, int port);

    /// Answers until Stop() is called from another thread.
    void Run() { server.listen_after_bind(); }
    bool IsRunning() const { return server.is_running(); }
    void Stop() { server.stop(); }

private:
    void AnswerAddress(const httplib::Request& request, httplib::Response& response) const;
    void AnswerFile(const httplib::Request& request, httplib::Response& response) const;
    QString FileFor(const QString& path) const;

    const AddressBook& addresses;
    QString root; ///< Without links in it; a slash is behind.
    std::string ownHost;
    httplib::Server server;
};
