// Round trips with the blocking client, flights with a completion queue; the service runs in the library's call-backs.
#include <grpcpp/grpcpp.h>

#include "EchoPeer.h"
#include "echo.grpc.pb.h"

namespace bench {

namespace {

std::string Address(const std::string& path) {
  return "unix:" + path;
}

class Service final : public EchoService::CallbackService {
  grpc::ServerUnaryReactor* Echo(grpc::CallbackServerContext* context, const Payload* request,
                                 Payload* reply) override {
    reply->set_data(request->data());
    grpc::ServerUnaryReactor* const reactor = context->DefaultReactor();
    reactor->Finish(grpc::Status::OK);
    return reactor;
  }
};

class Client final : public EchoClient {
 public:
  explicit Client(const std::string& path)
      : channel_(grpc::CreateChannel(Address(path), grpc::InsecureChannelCredentials())),
        stub_(EchoService::NewStub(channel_)) {
    const auto end = std::chrono::system_clock::now() + std::chrono::seconds(20);
    Require(channel_->WaitForConnected(end), "WaitForConnected");
  }

  void RoundTrip(const std::string& payload) override {
    grpc::ClientContext context;
    request_.set_data(payload);
    Payload reply;
    Require(stub_->Echo(&context, request_, &reply).ok(), "Echo");
    Require(reply.data().size() == payload.size(), "Echo");
  }

  void Flight(const std::string& payload, int count) override {
    request_.set_data(payload);
    int sent = 0;
    for (int received = 0; received < count; ++received) {
      for (; sent < count && sent < received + kInFlight; ++sent) Start();
      void* tag = nullptr;
      bool good = false;
      Require(queue_.Next(&tag, &good) && good, "Next");
      const std::unique_ptr<Call> call(static_cast<Call*>(tag));
      Require(call->status.ok(), "Echo");
    }
  }

 private:
  struct Call {
    grpc::ClientContext context;
    Payload reply;
    grpc::Status status;
    std::unique_ptr<grpc::ClientAsyncResponseReader<Payload>> reader;
  };

  void Start() {
    auto* const call = new Call;  // the queue hands it back
    call->reader = stub_->AsyncEcho(&call->context, request_, &queue_);
    call->reader->Finish(&call->reply, &call->status, call);
  }

  const std::shared_ptr<grpc::Channel> channel_;
  const std::unique_ptr<EchoService::Stub> stub_;
  grpc::CompletionQueue queue_;
  Payload request_;
};

}  // namespace

void ServeGrpc(const std::string& path) {
  Service service;
  grpc::ServerBuilder builder;
  builder.AddListeningPort(Address(path), grpc::InsecureServerCredentials());
  builder.RegisterService(&service);
  builder.BuildAndStart()->Wait();
}

std::unique_ptr<EchoClient> ConnectGrpc(const std::string& path) {
  return std::make_unique<Client>(path);
}

}  // namespace bench
