#include "fakebmc/selfsignedcertificate.h"

#include <memory>
#include <stdexcept>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

namespace {

const long VALID_SECONDS = 24 * 60 * 60;
const char* const HOST_NAME = "localhost";
// Extensions as (NID, value): loopback names and addresses, and fit to be its own trust anchor.
const struct {
    int nid;
    const char* value;
} EXTENSIONS[] = {
    {NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1"},
    {NID_basic_constraints, "critical,CA:TRUE"},
    {NID_key_usage, "critical,digitalSignature,keyCertSign"},
};

typedef std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> KeyPtr;
typedef std::unique_ptr<X509, decltype(&X509_free)> CertPtr;
typedef std::unique_ptr<BIO, decltype(&BIO_free)> BioPtr;

void Require(bool ok, const char* what)
{
    if (!ok)
        throw std::runtime_error(std::string("self-signed certificate: ") + what + " failed");
}

std::string BioText(BIO* bio)
{
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return std::string(data, static_cast<std::size_t>(size));
}

void AddExtensions(X509* cert)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, cert, cert, nullptr, nullptr, 0);
    for (const auto& extension : EXTENSIONS) {
        X509_EXTENSION* made = X509V3_EXT_conf_nid(nullptr, &context, extension.nid, extension.value);
        Require(made != nullptr, "X509V3_EXT_conf_nid");
        const int added = X509_add_ext(cert, made, -1);
        X509_EXTENSION_free(made);
        Require(added == 1, "X509_add_ext");
    }
}

}  // namespace

SelfSignedCertificate::SelfSignedCertificate()
{
    KeyPtr key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    Require(key != nullptr, "EVP_EC_gen");
    CertPtr cert(X509_new(), &X509_free);
    Require(cert != nullptr, "X509_new");
    Require(X509_set_version(cert.get(), 2) == 1, "X509_set_version");
    Require(ASN1_INTEGER_set(X509_get_serialNumber(cert.get()), 1) == 1, "ASN1_INTEGER_set");
    X509_gmtime_adj(X509_getm_notBefore(cert.get()), -60);
    X509_gmtime_adj(X509_getm_notAfter(cert.get()), VALID_SECONDS);
    Require(X509_set_pubkey(cert.get(), key.get()) == 1, "X509_set_pubkey");
    X509_NAME* name = X509_get_subject_name(cert.get());
    Require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                       reinterpret_cast<const unsigned char*>(HOST_NAME), -1, -1, 0) == 1,
            "X509_NAME_add_entry_by_txt");
    Require(X509_set_issuer_name(cert.get(), name) == 1, "X509_set_issuer_name");
    AddExtensions(cert.get());
    Require(X509_sign(cert.get(), key.get(), EVP_sha256()) > 0, "X509_sign");

    BioPtr certBio(BIO_new(BIO_s_mem()), &BIO_free);
    BioPtr keyBio(BIO_new(BIO_s_mem()), &BIO_free);
    Require(certBio && keyBio, "BIO_new");
    Require(PEM_write_bio_X509(certBio.get(), cert.get()) == 1, "PEM_write_bio_X509");
    Require(PEM_write_bio_PrivateKey(keyBio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1,
            "PEM_write_bio_PrivateKey");
    certificatePem = BioText(certBio.get());
    privateKeyPem = BioText(keyBio.get());
}
