#ifndef KESTRO_FAKEBMC_SELFSIGNEDCERTIFICATE_H
#define KESTRO_FAKEBMC_SELFSIGNEDCERTIFICATE_H

#include <string>

// A fresh P-256 key and a certificate for "localhost", 127.0.0.1 and ::1 signed by that key,
// valid for a day. A client can trust it by naming the certificate as its CA file.
class SelfSignedCertificate {
public:
    // Throws std::runtime_error when OpenSSL fails.
    SelfSignedCertificate();

    const std::string& CertificatePem() const { return certificatePem; }
    const std::string& PrivateKeyPem() const { return privateKeyPem; }

private:
    std::string certificatePem;
    std::string privateKeyPem;
};

#endif
