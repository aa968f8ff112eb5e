const { Product } = NovaExtension;

console.log(Product.language().data, Product.getAppVersionInfo().data.product);
