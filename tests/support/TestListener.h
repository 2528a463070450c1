// A listener for exports on the loopback, which answers as a test tells it to.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "posix/Pipe.h"

struct gnutls_certificate_credentials_st;

namespace ZebManager {

/// What a listener needs for TLS: a key, and a certificate for 127.0.0.1 that it has signed itself.
class TestCertificate {
 public:
  /// `priorities`: what of TLS it takes, as GnuTLS writes them.
  explicit TestCertificate(std::string priorities = "NORMAL");
  TestCertificate(const TestCertificate&) = delete;
  TestCertificate& operator=(const TestCertificate&) = delete;
  ~TestCertificate();
  /// The certificate as PEM.
  const std::string& pem() const { return _pem; }

 private:
  friend class TestConnection;
  const std::string _priorities;
  std::string _pem;
  gnutls_certificate_credentials_st* _credentials = nullptr;
};

class TestListener {
 public:
  struct Request {
    std::string head;
    std::string body;
    std::chrono::steady_clock::time_point arrival = std::chrono::steady_clock::now();
  };
  /// What is sent for the request with a number, from 0; nothing: the connection is closed without an answer.
  using Script = std::function<std::string(std::size_t number, const Request& request)>;

  static std::string response(const std::string& status, const std::string& body);
  static std::string acknowledgement();
  static std::string cimError();

  /// Listens on a port; 0 takes a free one. With a certificate, which has to outlive it, for HTTPS.
  explicit TestListener(Script script, std::uint16_t port = 0, const TestCertificate* certificate = nullptr);
  TestListener() : TestListener([](std::size_t, const Request&) { return acknowledgement(); }) {}
  TestListener(const TestListener&) = delete;
  TestListener& operator=(const TestListener&) = delete;
  ~TestListener();

  std::uint16_t port() const { return _port; }
  std::string url() const {
    return (_certificate ? "https" : "http") + std::string("://127.0.0.1:") + std::to_string(_port) +
           "/alerts";
  }
  std::vector<Request> requests() const;
  /// Waits until so many requests have come; false after a minute.
  bool waitFor(std::size_t count) const;

 private:
  void serve();
  void answer(ZEB::FileDescriptor socket);

  Script _script;
  const TestCertificate* _certificate;
  std::uint16_t _port = 0;
  ZEB::FileDescriptor _socket;
  ZEB::Pipe _stop = ZEB::makePipe();
  mutable std::mutex _mutex;
  mutable std::condition_variable _came;
  std::vector<Request> _requests;
  std::thread _thread;
};

/// A port of the loopback that nobody listens on.
std::uint16_t freePort();

}  // namespace ZebManager
